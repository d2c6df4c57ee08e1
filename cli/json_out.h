/// JSON on standard output. Text inside the program is Windows-1252 and JSON is UTF-8: every text
/// goes through json_text.
#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace velkoro {

/// Keys keep the order in which they are written.
using json = nlohmann::ordered_json;

/// A text of the stores as a JSON string.
json json_text(std::string_view bytes);

/// The messages shown so far: [{"number": N, "text": "..."}].
json messages_json();

/// Prints the document with the messages shown so far behind its last key. Called once a run, at
/// its end.
void print_json(json document);

} // namespace velkoro

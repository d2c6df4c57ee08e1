#include "cli/json_out.h"

#include "cli/messages.h"
#include "core/code_page.h"

#include <cstdio>

namespace velkoro {

json json_text(std::string_view bytes)
{
    return to_utf8(bytes);
}

json messages_json()
{
    json list = json::array();
    for (const shown_message& m : cli.messages)
        list.push_back({{"number", m.number}, {"text", json_text(m.text)}});
    return list;
}

void print_json(json document)
{
    document["messages"] = messages_json();
    // A path may hold bytes that are no UTF-8.
    const std::string text = document.dump(1, ' ', false, json::error_handler_t::replace) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
}

} // namespace velkoro

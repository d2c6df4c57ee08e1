/// Reads the shipped data files for the tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// All bytes of a file of data/; a missing or empty one fails the test.
std::string data_file(const std::string& name);

/// The fields of a line; a separator at its end makes an empty last field.
std::vector<std::string> fields_of(std::string line, std::string_view separator);

/// A row of the language table's source, in UTF-8.
struct text_row {
    int number = 0;
    std::string comment{}, english{}, german{};
};
/// All rows behind the head line; a row without four fields fails the test and is left out.
std::vector<text_row> language_rows();

#include "tests/data/data_files.h"

#include "core/text_tools.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using namespace velkoro;

std::string data_file(const std::string& name)
{
    std::ifstream in(std::string(VELKORO_SOURCE_DIR) + "/data/" + name, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(bytes, "") << name;
    return bytes;
}

std::vector<std::string> fields_of(std::string line, std::string_view separator)
{
    std::vector<std::string> fields;
    for (bool more = true; more;) {
        more = line.find(separator) != std::string::npos;
        fields.push_back(cut_token(line, separator));
    }
    return fields;
}

std::vector<text_row> language_rows()
{
    std::vector<text_row> rows;
    const std::string bytes = data_file("velkoro.txt");
    const auto lines = split_lines(bytes);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const auto f = fields_of(std::string(lines[i]), "\t");
        EXPECT_EQ(f.size(), 4U) << lines[i];
        if (f.size() == 4)
            rows.push_back({std::stoi(f[0]), f[1], f[2], f[3]});
    }
    return rows;
}

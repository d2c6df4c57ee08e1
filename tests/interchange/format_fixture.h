/// What the tests of the single formats share: files as text in, what was read as lines of text
/// out, and a store with a few waypoints and a route to be written.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace velkoro {

class format_fixture : public testing::Test {
protected:
    scripted_platform user{};

    format_fixture();
    ~format_fixture() override;

    /// Reads a text by the row of that name and gives what it holds, a line each:
    ///     W name|comment|latitude longitude|date time|altitude|proximity in 100 m
    ///     R name: names of the points
    ///     bad 3 7       numbers of the malformed lines
    ///     refused
    /// "-" stands for what is unknown. The store stays as it is.
    std::string read(std::string_view format, std::string_view extension, std::string_view text);

    /// The store as a file of that format.
    static std::string write(std::string_view format, std::string_view extension,
                             export_options options = {});

    /// A file of tests/interchange/samples.
    static std::string sample(const std::string& name);

    /// Appends a waypoint to the store.
    static int put(std::string_view name, std::string_view comment, double lat, double lon,
                   std::string_view date = {}, std::int16_t alt = alt_unknown,
                   std::int16_t prox = 0);
    /// Appends a route of those names.
    static void put_route(std::string_view name, std::initializer_list<std::string_view> points);
    /// Waypoints on all sides of the earth, with what is awkward in texts, and a route that comes
    /// back to its start.
    static void put_awkward();
};

/// The text with each "\n" as CR LF.
std::string crlf(std::string_view text);

} // namespace velkoro

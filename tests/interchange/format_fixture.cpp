#include "tests/interchange/format_fixture.h"

#include "coords/datum.h"
#include "coords/times.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/wayp_insert.h"

#include <cmath>
#include <cstdio>

namespace velkoro {
namespace {

std::string known(bool there, const std::string& text)
{
    return there ? text : "-";
}

std::string angle(std::int32_t semicircles)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.5f", semicircles * 180.0 / 2147483648.0);
    return std::string_view(text) == "-0.00000" ? "0.00000" : text;
}

std::string line_of(const wayp_rec& w)
{
    return "W " + w.nam + "|" + w.kom + "|" + angle(w.pos.lat) + " " + angle(w.pos.lon) + "|" +
           known(w.dat != 0, date_pic(seconds_date(w.dat), "yyyy-mm-dd hh:nn:ss")) + "|" +
           known(w.alt != alt_unknown, std::to_string(w.alt)) + "|" +
           known(w.prox != 0, std::to_string(w.prox)) + "\n";
}

} // namespace

format_fixture::format_fixture()
{
    datums = datum_parse("WGS 84\r\n"
                         "European 1950,-251,-0.14192702,-87,-98,-121\r\n"
                         "WGS 84,0,0,0,0,0\r\n");
    Form1.Datum.items = {"European 1950", "WGS 84"};
    Form1.Datum.selected = 0; // the files' own datum counts, not the chosen one
    settings.month_names = "JAN,FEB,MAR,APR,MAY,JUN,JUL,AUG,SEP,OCT,NOV,DEC";
    store.wp_name_max = 30;
    store.wp_ext_chars = true;
}

format_fixture::~format_fixture()
{
    datums = {};
    Form1.Datum.items.clear();
    Form1.Datum.selected = -1;
}

std::string format_fixture::read(std::string_view format, std::string_view extension,
                                 std::string_view text)
{
    const format_row* row = format_of_text(format, true);
    if (row == nullptr || row->read == nullptr) {
        ADD_FAILURE() << "no reader of " << format;
        return {};
    }
    import_content content;
    user.messages.clear();
    const import_result result = import_bytes(*row, text, extension, false, &content);
    std::string out;
    for (const wayp_rec& w : content.waypoints)
        out += line_of(w);
    for (const import_content::route& r : content.routes) {
        out += "R " + r.name + ":";
        for (const wayp_rec& w : r.points)
            out += " " + w.nam;
        out += "\n";
    }
    if (result.bad_lines > 0)
        out += "bad " + std::to_string(result.bad_lines) + "\n";
    if (result.end == native_end::not_native)
        out += "refused\n";
    return out;
}

std::string format_fixture::write(std::string_view format, std::string_view extension,
                                  export_options options)
{
    const format_row* row = format_of_text(format, true);
    if (row == nullptr || row->write == nullptr) {
        ADD_FAILURE() << "no writer of " << format;
        return {};
    }
    return export_bytes(*row, options, extension).bytes;
}

std::string format_fixture::sample(const std::string& name)
{
    const auto bytes =
        read_file(std::string(VELKORO_SOURCE_DIR) + "/tests/interchange/samples/" + name);
    EXPECT_TRUE(bytes) << name;
    return bytes.value_or("");
}

int format_fixture::put(std::string_view name, std::string_view comment, double lat, double lon,
                        std::string_view date, std::int16_t alt, std::int16_t prox)
{
    wayp_rec w;
    w.nam = name;
    w.kom = comment;
    w.pos = {static_cast<std::int32_t>(std::lround(lat / 180 * 2147483648.0)),
             static_cast<std::int32_t>(std::lround(lon / 180 * 2147483648.0))};
    if (const auto t = date_parse(date))
        w.dat = static_cast<std::int32_t>(date_seconds(*t));
    w.alt = alt;
    w.prox = prox;
    return wp_append(w);
}

void format_fixture::put_route(std::string_view name,
                               std::initializer_list<std::string_view> points)
{
    route_rec route;
    route.nam = fixed_text(name, 16);
    for (const std::string_view p : points)
        route.wps.append(p).append("$");
    EXPECT_GE(route_add(route), 0) << name;
}

void format_fixture::put_awkward()
{
    put("ALPHA", "Start, Nordtor", 48.12345, 11.56789, "02.05.2003 08:15:30", 519);
    put("K\xD6LN-1",
        "Br\xFC"
        "cke \xFC"
        "ber Flu\xDF",
        50.94128, 6.95828, "02.05.2003 09:00:00", 53);
    put("RIO", "\"Cristo\" & 'co'", -22.95192, -43.21049, "29.02.2004 23:59:59", 710);
    put("FIJI", "", -16.57819, 179.98765, {}, alt_unknown);
    put("A,B", "a comma, two commas,", 64.147, -179.9999, "01.04.1996 17:20:00", 0, 15);
    put("DEADSE", "below sea level", 31.5, 35.5, "04.03.2002 05:06:07", -428);
    put("QUITO", "Mitad_0;Grad", -0.00221, 0, "08.08.2008 08:08:08", 2483);
    put_route("LOOP 1", {"ALPHA", "RIO", "A,B", "ALPHA"});
}

std::string crlf(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '\n')
            out += '\r';
        out += c;
    }
    return out;
}

} // namespace velkoro

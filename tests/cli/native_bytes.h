/// Native files of the newest versions, byte by byte, independent of the program's own writers.
#pragma once

#include "core/byte_io.h"

#include <cstdint>
#include <string>

namespace velkoro {

inline std::string wp_head(const std::string& title)
{
    byte_writer w;
    w.fixed("VELkoro waypoints", 17);
    w.i16(204);
    w.lstr("WGS 84");
    w.lstr("UTM");
    w.lstr("+1 L3 L10"); // time zone
    w.i16(1);            // sorted by comment
    w.lstr("REF");
    w.i32(560000000); // reference position
    w.i32(100000000);
    w.i32(25000); // scale
    w.lstr(title);
    return w.out;
}

inline std::string wp_waypoint(const std::string& name, const std::string& comment,
                               std::int32_t lat, std::int32_t lon, std::int32_t date = 100,
                               std::int16_t prox = 0, std::int16_t symbol = 0,
                               std::int16_t altitude = -32768)
{
    byte_writer w;
    w.fixed("W", 1);
    w.lstr(name);
    w.lstr(comment);
    w.i32(lat);
    w.i32(lon);
    w.i32(date);
    w.i16(prox);
    w.i16(symbol);
    w.i16(altitude);
    return w.out;
}

inline std::string wp_route(const std::string& name, const std::string& keys,
                            const std::string& speeds, const std::string& corrections,
                            const std::string& notes, std::int16_t colour = 1)
{
    byte_writer w;
    w.fixed("R", 1);
    w.fixed(name, 16);
    w.lstr(keys);
    w.i16(colour);
    w.lstr(speeds);
    w.lstr(corrections);
    w.lstr(notes);
    return w.out;
}

/// The head of an appended ("A") or a reconciling ("U") section.
inline std::string section(char tag, std::int16_t version)
{
    byte_writer w;
    w.u8(static_cast<std::uint8_t>(tag));
    w.i16(version);
    return w.out;
}

inline std::string t_head(const std::string& title)
{
    byte_writer w;
    w.fixed("VELkoro track", 13);
    w.i16(203);
    w.lstr(title);
    return w.out;
}

inline std::string t_point(std::int32_t lat, std::int32_t lon, std::int32_t time,
                           std::uint8_t flags = 2, const std::string& comment = {},
                           std::int16_t altitude = -32768)
{
    byte_writer w;
    w.fixed("T", 1);
    w.i32(lat);
    w.i32(lon);
    w.i32(time);
    w.u8(flags);
    w.lstr(comment);
    w.i16(altitude);
    return w.out;
}

} // namespace velkoro

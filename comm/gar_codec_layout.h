/// Layouts of Garmin waypoint records: fields in wire order, and the one walker that reads and
/// writes them, so that decoder and encoder cannot drift apart. All numbers are little-endian,
/// floats IEEE 32-bit. Source: Garmin interface document 001-00063-00.
#pragma once

#include "core/byte_io.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velkoro {

/// "No value" of height, depth, distance and temperature: 1.0E25, the bytes 51 59 04 69.
inline constexpr float gar_no_value = 1.0E25F;

/// Fields of waypoint records. Those that say so are constant on sending and skipped on reading.
enum class fld : std::uint8_t {
    ident6,
    ident_z,
    link_z, ///< D106: text behind the identifier; sent empty
    lat,
    lon,
    time4,  ///< old records: sent as 0
    time32, ///< D110: seconds since date_base
    comment40,
    comment_z,
    dist,
    alt16,
    alt32,
    depth,
    temperature, ///< sent as gar_no_value
    symb8,
    symb16,
    disp8,
    colour8,
    packed8, ///< bits 0 to 4 colour, 5 and 6 display
    class8,
    country2,
    state2,
    city24,
    city_z,
    facility30,
    facility_z,
    rest_z, ///< address, crossing road: sent empty
    data_type1,
    attr60,
    attr70,
    attr80,
    subclass18, ///< sent as 6 bytes of 00, 12 of FF
    zero1,
    zero2,
    zero4,
    zero14,
    blank2,
    blank56
};

/// All fields that any record may hold, as they stand on the wire.
struct gar_wire {
    std::string ident{}, link{}, comment{}, country{}, state{}, city{}, facility{};
    std::int32_t lat = 0, lon = 0, time = 0;
    float dist = gar_no_value, alt = gar_no_value, depth = gar_no_value;
    std::int16_t alt16 = 0;
    std::uint16_t symbol = 0;
    std::uint8_t display = 0, colour = 0, klass = 0;
};

struct gar_layout {
    int type = 0;
    std::size_t bytes = 0;  ///< length; of records with texts: up to the first text
    std::size_t needed = 0; ///< bytes that hold name and position; what is behind may be missing
    std::span<const fld> fields{};
};

// clang-format off
namespace layout {
using enum fld;
inline constexpr fld d100[] = {ident6, lat, lon, time4, comment40};
inline constexpr fld d101[] = {ident6, lat, lon, time4, comment40, dist, symb8};
inline constexpr fld d102[] = {ident6, lat, lon, time4, comment40, dist, symb16};
inline constexpr fld d103[] = {ident6, lat, lon, time4, comment40, symb8, disp8};
inline constexpr fld d104[] = {ident6, lat, lon, time4, comment40, dist, symb16, disp8};
inline constexpr fld d105[] = {lat, lon, symb16, ident_z};
inline constexpr fld d106[] = {zero14, lat, lon, symb16, ident_z, link_z};
inline constexpr fld d107[] = {ident6, lat, lon, time4, comment40, symb8, disp8, dist, colour8};
inline constexpr fld d108[] = {class8, colour8, disp8, attr60, symb16, subclass18, lat, lon, alt32, depth, dist,
                               state2, country2, ident_z, comment_z, facility_z, city_z, rest_z, rest_z};
inline constexpr fld d109[] = {data_type1, class8, packed8, attr70, symb16, subclass18, lat, lon, alt32, depth, dist,
                               state2, country2, zero4, ident_z, comment_z, facility_z, city_z, rest_z, rest_z};
inline constexpr fld d110[] = {data_type1, class8, packed8, attr80, symb16, subclass18, lat, lon, alt32, depth, dist,
                               state2, country2, zero4, temperature, time32, zero2,
                               ident_z, comment_z, facility_z, city_z, rest_z, rest_z};
inline constexpr fld d150[] = {ident6, country2, class8, lat, lon, blank2, blank56, comment40};
inline constexpr fld d151[] = {ident6, lat, lon, time4, comment40, dist, facility30, city24, state2, alt16, country2,
                               zero1, class8};
inline constexpr fld d154[] = {ident6, lat, lon, time4, comment40, dist, facility30, city24, state2, alt16, country2,
                               zero1, class8, symb16};
inline constexpr fld d155[] = {ident6, lat, lon, time4, comment40, dist, facility30, city24, state2, alt16, country2,
                               zero1, class8, symb16, disp8};
inline constexpr fld d400[] = {ident6, lat, lon, time4, comment40, dist};
inline constexpr fld d403[] = {ident6, lat, lon, time4, comment40, symb8, disp8, dist};
inline constexpr fld d450[] = {zero2, ident6, country2, class8, lat, lon, blank2, blank56, comment40, dist};
} // namespace layout

inline constexpr std::array<gar_layout, 19> gar_layouts{{
    {100,  58, 14, layout::d100},
    {101,  63, 14, layout::d101},
    {102,  64, 14, layout::d102},
    {103,  60, 14, layout::d103},
    {104,  65, 14, layout::d104},
    {105,  10, 11, layout::d105},
    {106,  24, 25, layout::d106},
    {107,  65, 14, layout::d107},
    {108,  48, 49, layout::d108},
    {109,  52, 53, layout::d109},
    {110,  62, 63, layout::d110},
    {150, 115, 17, layout::d150},
    {151, 124, 14, layout::d151},
    {152, 124, 14, layout::d151},
    {154, 126, 14, layout::d154},
    {155, 127, 14, layout::d155},
    {400,  62, 14, layout::d400},
    {403,  64, 14, layout::d403},
    {450, 121, 19, layout::d450},
}};
// clang-format on

/// The layout of a D number, nullptr when it is unknown.
constexpr const gar_layout* gar_layout_of(int type)
{
    for (const gar_layout& l : gar_layouts)
        if (l.type == type)
            return &l;
    return nullptr;
}

/// Takes fields off a record. What the record lacks keeps its value in the target.
class gar_field_reader {
public:
    explicit gar_field_reader(std::string_view data) : in(data) {}
    template <class T> void number(T& v)
    {
        const T got = in.le<T>();
        if (in.ok())
            v = got;
    }
    void real(float& v)
    {
        const auto bits = in.le<std::uint32_t>();
        if (in.ok())
            v = std::bit_cast<float>(bits);
    }
    /// n bytes, or what is left of them, up to the first 0 byte.
    void fixed(std::string& v, std::size_t n)
    {
        const std::string_view b = in.fixed(n < in.remaining() ? n : in.remaining());
        v = b.substr(0, b.find('\0'));
    }
    /// A text ended by a 0 byte or by the end of the record.
    void zero_ended(std::string& v, std::size_t)
    {
        const std::string_view b = rest();
        v = b.substr(0, b.find('\0'));
        in.skip(v.size() < b.size() ? v.size() + 1 : v.size());
    }
    void constant(std::size_t n, char) { in.skip(n); }

private:
    std::string_view rest() const
    {
        byte_reader copy = in;
        return copy.fixed(copy.remaining());
    }
    byte_reader in;
};

/// Puts fields behind one another.
class gar_field_writer {
public:
    std::string out{};

    template <class T> void number(T v)
    {
        byte_writer w;
        w.le(v);
        out += w.out;
    }
    void real(float v) { number(std::bit_cast<std::uint32_t>(v)); }
    void fixed(const std::string& v, std::size_t n)
    {
        out.append(v, 0, n);
        if (v.size() < n)
            out.append(n - v.size(), ' ');
    }
    /// `room` counts the 0 byte.
    void zero_ended(const std::string& v, std::size_t room)
    {
        out.append(v, 0, room - 1);
        out += '\0';
    }
    void constant(std::size_t n, char c) { out.append(n, c); }
};

/// Walks the fields of a record: a reader fills `w`, a writer takes from it.
template <class Io> void gar_walk(Io& io, std::span<const fld> fields, gar_wire& w)
{
    const auto small = [&io](auto& field) { // one byte of a wider field
        auto b = static_cast<std::uint8_t>(field);
        io.number(b);
        field = b;
    };
    float no_value = gar_no_value;
    std::string none;
    for (const fld f : fields)
        switch (f) {
        case fld::ident6: io.fixed(w.ident, 6); break;
        case fld::ident_z: io.zero_ended(w.ident, 51); break;
        case fld::link_z: io.zero_ended(w.link, 51); break;
        case fld::lat: io.number(w.lat); break;
        case fld::lon: io.number(w.lon); break;
        case fld::time4:
        case fld::time32: io.number(w.time); break;
        case fld::comment40: io.fixed(w.comment, 40); break;
        case fld::comment_z: io.zero_ended(w.comment, 51); break;
        case fld::dist: io.real(w.dist); break;
        case fld::alt16: io.number(w.alt16); break;
        case fld::alt32: io.real(w.alt); break;
        case fld::depth: io.real(w.depth); break;
        case fld::temperature: io.real(no_value); break;
        case fld::symb8: small(w.symbol); break;
        case fld::symb16: io.number(w.symbol); break;
        case fld::disp8: io.number(w.display); break;
        case fld::colour8: io.number(w.colour); break;
        case fld::packed8: {
            auto b = static_cast<std::uint8_t>((w.display & 3) << 5 | (w.colour & 31));
            io.number(b);
            w.display = static_cast<std::uint8_t>(b >> 5 & 3);
            w.colour = static_cast<std::uint8_t>(b & 31);
            break;
        }
        case fld::class8: io.number(w.klass); break;
        case fld::country2: io.fixed(w.country, 2); break;
        case fld::state2: io.fixed(w.state, 2); break;
        case fld::city24: io.fixed(w.city, 24); break;
        case fld::city_z: io.zero_ended(w.city, 25); break;
        case fld::facility30: io.fixed(w.facility, 30); break;
        case fld::facility_z: io.zero_ended(w.facility, 31); break;
        case fld::rest_z: io.zero_ended(none, 51); break;
        case fld::data_type1: io.constant(1, 1); break;
        case fld::attr60: io.constant(1, 0x60); break;
        case fld::attr70: io.constant(1, 0x70); break;
        case fld::attr80: io.constant(1, static_cast<char>(0x80)); break;
        case fld::subclass18:
            io.constant(6, 0);
            io.constant(12, static_cast<char>(0xFF));
            break;
        case fld::zero1: io.constant(1, 0); break;
        case fld::zero2: io.constant(2, 0); break;
        case fld::zero4: io.constant(4, 0); break;
        case fld::zero14: io.constant(14, 0); break;
        case fld::blank2: io.constant(2, ' '); break;
        case fld::blank56: io.constant(56, ' '); break;
        }
}

} // namespace velkoro

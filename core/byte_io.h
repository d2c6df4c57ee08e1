/// Fields of byte strings: wire and file data, little-endian.
/// `byte_reader` takes fields off the front of a byte string; a read past the end yields zero or an
/// empty text and makes `ok()` false for good, so a decoder checks once, at its end, and only then
/// touches its target. `byte_writer` mirrors it call by call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace velkoro {

class byte_reader {
public:
    explicit byte_reader(std::string_view bytes) : data(bytes) {}

    /// False once any read has passed the end.
    bool ok() const { return good; }
    bool at_end() const { return pos >= data.size(); }
    std::size_t position() const { return pos; }
    std::size_t size() const { return data.size(); }
    std::size_t remaining() const { return data.size() - pos; }
    /// Moves to an absolute offset; one past the end makes the reader bad.
    void seek(std::size_t offset)
    {
        if (offset > data.size())
            good = false;
        else
            pos = offset;
    }
    void skip(std::size_t n) { take(n); }

    /// One integer of the width of T, little-endian.
    template <class T> T le()
    {
        static_assert(std::is_integral_v<T>);
        const std::string_view b = take(sizeof(T));
        std::make_unsigned_t<T> v = 0;
        for (std::size_t i = b.size(); i-- > 0;)
            v = static_cast<std::make_unsigned_t<T>>((static_cast<std::uint64_t>(v) << 8) |
                                                     static_cast<unsigned char>(b[i]));
        return static_cast<T>(v);
    }
    std::uint8_t u8() { return le<std::uint8_t>(); }
    std::int16_t i16() { return le<std::int16_t>(); }
    std::int32_t i32() { return le<std::int32_t>(); }
    /// Exactly n bytes, a view into the data; empty when they are not all there.
    std::string_view fixed(std::size_t n) { return take(n); }
    /// An i16 length, then that many bytes. A negative length makes the reader bad.
    std::string_view lstr()
    {
        const std::int16_t n = i16();
        if (n < 0) {
            good = false;
            return {};
        }
        return take(static_cast<std::size_t>(n));
    }

private:
    std::string_view take(std::size_t n)
    {
        if (!good || n > remaining()) {
            good = false;
            return {};
        }
        const std::string_view b = data.substr(pos, n);
        pos += n;
        return b;
    }
    std::string_view data;
    std::size_t pos = 0;
    bool good = true;
};

class byte_writer {
public:
    std::string out{};

    template <class T> void le(T value)
    {
        static_assert(std::is_integral_v<T>);
        auto v = static_cast<std::make_unsigned_t<T>>(value);
        char b[sizeof(T)];
        for (char& c : b) {
            c = static_cast<char>(v & 0xFF);
            v = static_cast<std::make_unsigned_t<T>>(static_cast<std::uint64_t>(v) >> 8);
        }
        out.append(b, sizeof(T));
    }
    void u8(std::uint8_t v) { out += static_cast<char>(v); }
    void i16(std::int16_t v) { le(v); }
    void i32(std::int32_t v) { le(v); }
    /// Exactly n bytes: the text cut, or padded with blanks.
    void fixed(std::string_view text, std::size_t n)
    {
        out.append(text.substr(0, n));
        if (text.size() < n)
            out.append(n - text.size(), ' ');
    }
    /// An i16 length, then the bytes; a text longer than 32767 bytes is cut there.
    void lstr(std::string_view text)
    {
        text = text.substr(0, 32767);
        i16(static_cast<std::int16_t>(text.size()));
        out.append(text);
    }
};

} // namespace velkoro

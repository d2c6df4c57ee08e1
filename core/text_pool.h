/// Texts that repeat, kept once each: comments of track points.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// A text of four bytes: a number in the pool. Equal texts have equal numbers. Texts are never
/// removed before pool_reset.
class pooled_text {
public:
    pooled_text() = default;
    pooled_text(std::string_view text);
    pooled_text(const char* text) : pooled_text(std::string_view(text)) {}
    pooled_text(const std::string& text) : pooled_text(std::string_view(text)) {}
    operator std::string_view() const { return view(); }
    std::string_view view() const;
    std::string str() const { return std::string(view()); }
    bool empty() const { return id == 0; }
    bool operator==(const pooled_text&) const = default;

private:
    std::uint32_t id = 0; // 0 is the empty text
};

/// Forgets all texts; every pooled_text must be gone. Part of emptying the track store.
void pool_reset();
/// Bytes that the pool holds, for tests and benchmarks.
std::size_t pool_bytes();

} // namespace velkoro

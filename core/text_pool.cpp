#include "core/text_pool.h"

#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <vector>

namespace velkoro {
namespace {

// The number of a text is its place in the arena, so that a text costs its bytes, one to five bytes
// of length and its share of the hash table. The arena grows by chunks that never move, so views
// stay valid. A text longer than a chunk gets neighbouring chunks of one block.
constexpr std::size_t chunk_bits = 16;
constexpr std::size_t chunk_size = std::size_t{1} << chunk_bits;
constexpr std::size_t most_chunks = std::size_t{1} << (32 - chunk_bits);

struct pool_state {
    std::vector<std::unique_ptr<char[]>> blocks{};
    std::vector<char*> chunks{};
    std::size_t used = 0; // of the last chunk
    std::size_t held = 0; // bytes of all blocks
    // Open addressing, 0 is a free slot; at most half full.
    std::vector<std::uint32_t> slots{};
    std::size_t count = 0;
    std::uint32_t last = 0; // the number given out last: runs of one comment skip the hash
};
pool_state pool;

std::string_view text_at(std::uint32_t id)
{
    const char* p = pool.chunks[id >> chunk_bits] + (id & (chunk_size - 1));
    std::size_t size = 0;
    unsigned shift = 0;
    for (;; ++p, shift += 7) {
        size |= static_cast<std::size_t>(static_cast<unsigned char>(*p) & 0x7F) << shift;
        if ((static_cast<unsigned char>(*p) & 0x80) == 0)
            break;
    }
    return {p + 1, size};
}

void add_chunks(std::size_t n)
{
    if (pool.chunks.size() + n > most_chunks)
        throw std::bad_alloc();
    pool.chunks.reserve(pool.chunks.size() + n);
    pool.blocks.push_back(std::make_unique_for_overwrite<char[]>(n * chunk_size));
    for (std::size_t i = 0; i < n; ++i)
        pool.chunks.push_back(pool.blocks.back().get() + i * chunk_size);
    pool.held += n * chunk_size;
}

std::uint32_t append(std::string_view text)
{
    char head[10];
    std::size_t head_size = 0;
    for (std::size_t n = text.size();; n >>= 7) {
        head[head_size++] = static_cast<char>((n & 0x7F) | (n > 0x7F ? 0x80 : 0));
        if (n <= 0x7F)
            break;
    }
    const std::size_t need = head_size + text.size();
    // Byte 0 of the arena stays free: number 0 is the empty text.
    if (pool.chunks.empty()) {
        add_chunks(1);
        pool.used = 1;
    }
    if (need > chunk_size - pool.used) {
        add_chunks((need + chunk_size - 1) >> chunk_bits);
        pool.used = 0;
    }
    const std::size_t blocks_size = (need + chunk_size - 1) >> chunk_bits;
    const std::size_t chunk = pool.chunks.size() - (pool.used == 0 ? blocks_size : 1);
    char* p = pool.chunks[chunk] + pool.used;
    std::memcpy(p, head, head_size);
    std::memcpy(p + head_size, text.data(), text.size());
    const auto id = static_cast<std::uint32_t>((chunk << chunk_bits) | pool.used);
    pool.used = need > chunk_size ? chunk_size : pool.used + need;
    return id;
}

std::size_t slot_of(std::string_view text)
{
    const std::size_t mask = pool.slots.size() - 1;
    std::size_t at = std::hash<std::string_view>{}(text)&mask;
    while (pool.slots[at] != 0 && text_at(pool.slots[at]) != text)
        at = (at + 1) & mask;
    return at;
}

void grow_slots()
{
    const std::vector<std::uint32_t> old = std::move(pool.slots);
    pool.slots.assign(old.empty() ? 64 : old.size() * 2, 0);
    for (const std::uint32_t id : old)
        if (id != 0)
            pool.slots[slot_of(text_at(id))] = id;
}

} // namespace

pooled_text::pooled_text(std::string_view text)
{
    if (text.empty())
        return;
    if (pool.last != 0 && text_at(pool.last) == text) {
        id = pool.last;
        return;
    }
    if (2 * (pool.count + 1) > pool.slots.size())
        grow_slots();
    const std::size_t at = slot_of(text);
    if (pool.slots[at] == 0) {
        pool.slots[at] = append(text);
        ++pool.count;
    }
    id = pool.last = pool.slots[at];
}

std::string_view pooled_text::view() const
{
    return id == 0 ? std::string_view{} : text_at(id);
}

void pool_reset()
{
    pool = {};
}

std::size_t pool_bytes()
{
    return pool.held + pool.chunks.capacity() * sizeof(char*) +
           pool.blocks.capacity() * sizeof(pool.blocks[0]) +
           pool.slots.capacity() * sizeof(pool.slots[0]);
}

} // namespace velkoro

#include "core/text_pool.h"

#include "core/store.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

using namespace velkoro;

namespace {

class TextPool : public testing::Test {
protected:
    scripted_platform user{};
};

} // namespace

TEST_F(TextPool, ATextIsFourBytesAndComesBackAsItWas)
{
    static_assert(sizeof(pooled_text) == 4);
    const pooled_text t("Feldberg");
    EXPECT_EQ(t.view(), "Feldberg");
    EXPECT_EQ(t.str(), "Feldberg");
    EXPECT_FALSE(t.empty());
}

TEST_F(TextPool, TheEmptyTextNeedsNoPlace)
{
    EXPECT_EQ(pooled_text(""), pooled_text());
    EXPECT_TRUE(pooled_text("").empty());
    EXPECT_EQ(pooled_text().view(), "");
    EXPECT_EQ(pool_bytes(), 0U);
}

TEST_F(TextPool, EqualTextsAreEqualAndStandOnce)
{
    const pooled_text a("one");
    const pooled_text b("two");
    const std::size_t bytes = pool_bytes();
    for (int i = 0; i < 100000; ++i) {
        EXPECT_EQ(pooled_text(i % 2 ? "one" : "two"), i % 2 ? a : b);
    }
    EXPECT_EQ(pool_bytes(), bytes);
    EXPECT_NE(a, b);
}

TEST_F(TextPool, HoldsZeroBytesAndTextsOfEveryLength)
{
    const std::string zero("a\0b", 3);
    const std::string zero_end("a\0", 2);
    EXPECT_EQ(pooled_text(zero).view(), zero);
    EXPECT_NE(pooled_text(zero_end), pooled_text("a"));
    std::vector<pooled_text> held;
    const std::vector<std::size_t> sizes = {1,     127,    128,    16383,   16384, 65530, 65531,
                                            65532, 65533,  65534,  65535,   65536, 65537, 131070,
                                            3,     131072, 200000, 1 << 20, 5};
    for (const std::size_t n : sizes)
        held.emplace_back(std::string(n, 'x'));
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        EXPECT_EQ(held[i].view().size(), sizes[i]);
        EXPECT_EQ(held[i].view(), std::string(sizes[i], 'x'));
        EXPECT_EQ(pooled_text(std::string(sizes[i], 'x')), held[i]);
    }
}

TEST_F(TextPool, AgreesWithAPlainTableOverRandomTexts)
{
    std::mt19937 random(20260517);
    std::unordered_map<std::string, pooled_text> table;
    std::vector<std::pair<std::string, pooled_text>> all;
    for (int i = 0; i < 50000; ++i) {
        std::string s;
        for (auto n = random() % 6; n > 0; --n)
            s += static_cast<char>(random() % 256);
        const pooled_text t(s);
        const auto [it, fresh] = table.try_emplace(s, t);
        EXPECT_EQ(it->second, t);
        all.emplace_back(s, t);
    }
    for (const auto& [s, t] : all)
        ASSERT_EQ(t.view(), s);
}

TEST_F(TextPool, ViewsStayWhereTheyAreWhileThePoolGrows)
{
    const std::string_view first = pooled_text("the first").view();
    const char* at = first.data();
    for (int i = 0; i < 100000; ++i)
        pooled_text("text " + std::to_string(i));
    EXPECT_EQ(pooled_text("the first").view().data(), at);
    EXPECT_EQ(first, "the first");
}

TEST_F(TextPool, ResettingGivesAllMemoryBack)
{
    pooled_text("something");
    EXPECT_GT(pool_bytes(), 0U);
    pool_reset();
    EXPECT_EQ(pool_bytes(), 0U);
    EXPECT_EQ(pooled_text("new").view(), "new");
}

TEST_F(TextPool, AMillionPointsWithCommentsOfTheirOwnNeedLessThan64BytesEach)
{
    constexpr int points = 1000000;
    for (int i = 0; i < points; ++i) {
        trackp_rec p;
        p.kom = std::to_string(i);
        track_append(p);
    }
    const std::size_t bytes = store.trk.capacity() * sizeof(trackp_rec) + pool_bytes();
    EXPECT_LT(bytes, std::size_t{64} * points);
    EXPECT_EQ(store.trk[999999].kom.view(), "999999");
}

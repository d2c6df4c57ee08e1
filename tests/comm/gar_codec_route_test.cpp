#include "comm/gar_codec_route.h"

#include "tests/comm/gar_codec_fixture.h"

namespace velkoro {
namespace {

class GarRoute : public GarCodec {
protected:
    static gar_route_in route_of(const std::string& data, int type)
    {
        gar_route_in in;
        EXPECT_TRUE(gar_route_decode(data, type, in));
        return in;
    }
};

TEST_F(GarRoute, HeaderD200IsItsNumber)
{
    EXPECT_EQ(gar_route_encode("HOME", 7, 200), raw("07"));
    EXPECT_EQ(route_of(raw("07"), 200), (gar_route_in{.number = 7}));
}

TEST_F(GarRoute, HeaderD201IsItsNumberAndAComment)
{
    const std::string data = raw("01") + "HOME" + blanks(16);
    EXPECT_EQ(gar_route_encode("HOME            ", 1, 201), data);
    EXPECT_EQ(route_of(data, 201), (gar_route_in{1, "HOME            "}));
    EXPECT_EQ(route_of(zeros(1) + "ACTIVE" + zeros(14), 201),
              (gar_route_in{0, "ACTIVE          "}));
    EXPECT_EQ(route_of(raw("02") + "ABCDEFGHIJKLMNOPQRST", 201),
              (gar_route_in{2, "ABCDEFGHIJKLMNOP"}));
    EXPECT_EQ(route_of(raw("FF"), 201), (gar_route_in{.number = 255})); // cut short
}

TEST_F(GarRoute, HeaderD202IsItsName)
{
    EXPECT_EQ(gar_route_encode("HOME            ", 7, 202), "HOME" + zeros(1));
    EXPECT_EQ(route_of("HOME" + zeros(1) + "REST", 202), (gar_route_in{1, "HOME            "}));
    EXPECT_EQ(route_of("OVER THE MOUNTAINS", 202), (gar_route_in{1, "OVER THE MOUNTAI"}));
    EXPECT_EQ(gar_route_encode(std::string(60, 'R'), 0, 202), std::string(50, 'R') + zeros(1));
}

TEST_F(GarRoute, NameHoldsNoListMark)
{
    EXPECT_EQ(route_of("FEE $5" + zeros(1), 202).name, "FEE -5          ");
}

TEST_F(GarRoute, HeaderOfAnotherTypeOrWithoutDataIsRefused)
{
    gar_route_in in{.number = 3, .name = "OLD"};
    EXPECT_FALSE(gar_route_decode("HOME", 203, in));
    EXPECT_EQ(in, gar_route_in{});
    for (const int type : {200, 201, 202})
        EXPECT_FALSE(gar_route_decode("", type, in));
    EXPECT_EQ(gar_route_encode("HOME", 1, 203), "");
}

std::string link(const std::string& link_class, const std::string& name)
{
    return raw(link_class) + user_subclass + name + zeros(1);
}

TEST_F(GarRoute, LinkIsTheTextOfItsLegWithALetterForItsClass)
{
    store.wp_ext_chars = true;
    const struct {
        const char* link_class;
        const char* leg;
    } rows[] = {{"0000", "B31&A"}, {"0100", "B31&B"}, {"0200", "B31&C"}, {"0300", "B31"}};
    for (const auto& r : rows) {
        EXPECT_EQ(gar_link_decode(link(r.link_class, "B31")), r.leg);
        EXPECT_EQ(gar_link_encode(r.leg), link(r.link_class, "B31"));
    }
    EXPECT_EQ(gar_link_decode(link("FF00", " B31 ")), "B31"); // snapped: as a direct one
    EXPECT_EQ(gar_link_encode("B31&D"), link("0300", "B31"));
    EXPECT_EQ(gar_link_encode("B31&E"), link("0300", "B31&E"));
    EXPECT_EQ(gar_link_encode(""), link("0300", ""));
    EXPECT_EQ(gar_link_encode("&A"), link("0000", ""));
    EXPECT_EQ(gar_link_decode(link("0000", "")), "&A");
}

TEST_F(GarRoute, LinkTextIsCutToEighteenCharactersAndHoldsNoListMark)
{
    EXPECT_EQ(gar_link_decode(link("0300", "ABCDEFGHIJKLMNOPQRSTUV")), "ABCDEFGHIJKLMNOPQR");
    EXPECT_EQ(gar_link_decode(link("0100", "ABCDEFGHIJKLMNOPQRSTUV")), "ABCDEFGHIJKLMNOPQR&B");
    EXPECT_EQ(gar_link_decode(link("0300", "A$B")), "A-B");
}

TEST_F(GarRoute, LinkThatIsCutShortIsADirectOne)
{
    EXPECT_EQ(gar_link_decode(""), "");
    EXPECT_EQ(gar_link_decode(raw("0000 0000")), "");
    EXPECT_EQ(gar_link_decode(link("0300", "B31").substr(0, 22)), "B3");
    EXPECT_EQ(gar_link_decode(link("0700", "B31")), "B31"); // a class nobody knows
}

} // namespace
} // namespace velkoro

#include "interchange/geocaching.h"

#include "tests/interchange/format_fixture.h"

using namespace velkoro;

namespace {

class Geocaching : public format_fixture {
protected:
    std::string loc(std::string_view text) { return read("Geocaching", ".loc", text); }
    std::string points(const std::string& text)
    {
        return loc("<?xml version=\"1.0\" encoding=\"UTF-8\"?><loc version=\"1.0\">" + text +
                   "</loc>");
    }
};

} // namespace

TEST_F(Geocaching, ReadsAFileOnOneLine)
{
    EXPECT_EQ(points("<waypoint><name id=\"GC1234\"><![CDATA[Title by Owner]]></name>"
                     "<coord lat=\"48.12345\" lon=\"-11.5678900000000\"/><type>Geocache</type>"
                     "<link text=\"Cache Details\">http://x/?a=1&amp;b=2</link></waypoint>"
                     "<waypoint><name id=\"GC2\">Plain</name><coord lat=\"-1\" lon=\"179.99999\"/>"
                     "</waypoint>"),
              "W GC1234|Title by Owner|48.12345 -11.56789|-|-|-\n"
              "W GC2|Plain|-1.00000 179.99999|-|-|-\n");
}

TEST_F(Geocaching, TakesAttributesInAnyOrderMarksAndCase)
{
    EXPECT_EQ(points("<WAYPOINT><Name  x = '>' ID='GC \"1\"'\n>A</NAME>"
                     "<coord\r\n lon='2' x=\"\" lat = \"1\" ></coord></WAYPOINT>"),
              "W GC \"1\"|A|1.00000 2.00000|-|-|-\n");
}

TEST_F(Geocaching, TurnsEntitiesAndUtf8IntoCharacters)
{
    EXPECT_EQ(points("<waypoint><name id=\"GC&amp;1&lt;&#65;&#x42;&gt;\">Br\xC3\xBC"
                     "cke &quot;&apos;&euro;&#8364;&#252; &amp; <b>x</b> & y"
                     "<![CDATA[ <&amp;> ]]></name><coord lat=\"1\" lon=\"2\"/></waypoint>"),
              "W GC&1<AB>|Br\xFC"
              "cke \"'&euro;\x80\xFC & x & y <&amp;>|1.00000 2.00000|-|-|-\n");
}

TEST_F(Geocaching, ReadsTheEncodingThatItsHeadNames)
{
    const std::string body = "<loc><waypoint><name id=\"A\">\xFC&#252;</name>"
                             "<coord lat=\"1\" lon=\"2\"/></waypoint></loc>";
    EXPECT_EQ(loc("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + body),
              "W A|\xFC\xFC|1.00000 2.00000|-|-|-\n");
    EXPECT_EQ(loc("<?xml version=\"1.0\" encoding=\"Windows-1252\"?>" + body),
              "W A|\xFC\xFC|1.00000 2.00000|-|-|-\n");
    EXPECT_EQ(loc("\xEF\xBB\xBF<loc><waypoint><name id=\"A\">\xC3\xBC</name>"
                  "<coord lat=\"1\" lon=\"2\"/></waypoint></loc>"),
              "W A|\xFC|1.00000 2.00000|-|-|-\n");
}

TEST_F(Geocaching, PassesOverRemarksAndOtherElements)
{
    EXPECT_EQ(points("<!-- <waypoint><name id=\"NO\"/></waypoint> --><x><y/></x>"
                     "<waypoint><difficulty>1</difficulty><coord lat=\"1\" lon=\"2\"/>"
                     "<name id=\"A\"><![CDATA[</waypoint>]]></name></waypoint>"),
              "W A|</waypoint>|1.00000 2.00000|-|-|-\n");
}

TEST_F(Geocaching, TakesTheTitleWhereThereIsNoCode)
{
    EXPECT_EQ(points("<waypoint><name>Only title</name><coord lat=\"1\" lon=\"2\"/></waypoint>"
                     "<waypoint><name id=\"B\"/><coord lat=\"1\" lon=\"2\"/></waypoint>"),
              "W Only title||1.00000 2.00000|-|-|-\nW B||1.00000 2.00000|-|-|-\n");
}

TEST_F(Geocaching, CountsWaypointsWithoutNameOrPlace)
{
    EXPECT_EQ(points("<waypoint><name id=\"A\"/></waypoint>"
                     "\n<waypoint><coord lat=\"1\" lon=\"2\"/></waypoint>"
                     "\n<waypoint><name id=\"B\"/><coord lat=\"91\" lon=\"2\"/></waypoint>"
                     "\n<waypoint><name id=\"C\"/><coord lat=\"north\" lon=\"2\"/></waypoint>"
                     "\n<waypoint><name id=\"D\"/><coord lat=\"1\" lon=\"2\"/>"
                     "\n<waypoint><name id=\"E\"/><coord lat=\"3\" lon=\"4\"/>"),
              "W D||1.00000 2.00000|-|-|-\nW E||3.00000 4.00000|-|-|-\nbad 4\n");
}

TEST_F(Geocaching, RefusesOtherFilesAndSurvivesBrokenOnes)
{
    EXPECT_EQ(loc("hello"), "refused\n");
    EXPECT_EQ(loc("<gpx></gpx>"), "refused\n");
    for (const char* text :
         {"<", "<loc", "<loc><waypoint><name id=\"", "<loc><![CDATA[", "<loc><!--",
          "<loc><waypoint><name id=\"A\"><![CDATA[", "<loc><waypoint><coord lat"})
        loc(text);
}

/// The comment's way to the receiver and back, and its marker texts.
#include "comm/gar_codec_comment.h"

#include "comm/gar_codec_layout.h"
#include "tests/comm/gar_codec_fixture.h"

namespace velkoro {
namespace {

class GarComment : public GarCodec {
protected:
    static void set(gar_place place, int value)
    {
        settings.garmin[static_cast<std::size_t>(place)] = value;
    }
    static void use_feet()
    {
        settings.alt_index = 1;
        settings.alt_unit = alt_factors[1];
    }
    static std::string comment_of(std::string_view data, int type)
    {
        return decoded(data, type).comment;
    }
    /// What a comment comes back as from a receiver.
    static std::string there_and_back(const std::string& comment, int type, bool proximity = false)
    {
        wayp_rec rec = hut();
        rec.kom = comment;
        return comment_of(encoded(rec, type, proximity), type);
    }
};

// Text
// -------------------------------------------------------------------------------------------------

TEST_F(GarComment, OfBlanksIsSentAsSixteenUnderlinesAndReadAsEmpty)
{
    for (const gar_layout& l : gar_layouts) {
        if (l.type == 105 || l.type == 106)
            continue;
        SCOPED_TRACE("D" + std::to_string(l.type));
        wayp_rec rec = hut();
        rec.kom = "   ";
        const std::string data = encoded(rec, l.type);
        EXPECT_NE(data.find(std::string(16, '_') + zeros(1)), std::string::npos);
        EXPECT_EQ(data.find(std::string(17, '_')), std::string::npos);
        EXPECT_EQ(comment_of(data, l.type), "");
    }
}

TEST_F(GarComment, IsPackedWithAZeroByteAndBlanks)
{
    std::string field;
    gar_comment_pack("HUT", field);
    EXPECT_EQ(field, "HUT" + zeros(1) + blanks(36));
    gar_comment_pack(std::string(39, 'A'), field);
    EXPECT_EQ(field, std::string(39, 'A') + zeros(1));
    gar_comment_pack(std::string(45, 'A'), field);
    EXPECT_EQ(field, std::string(40, 'A'));
}

TEST_F(GarComment, GoesOutInCapitalsUnlessTheCharacterSetIsExtended)
{
    const std::string words = "Höhle (nass), 3 m"_w;
    EXPECT_EQ(gar_text_out(words), "HOHLE -NASS-- 3 M");
    EXPECT_EQ(gar_text_out(" @ABChut "), "@ABCHUT");
    store.wp_ext_chars = true;
    EXPECT_EQ(gar_text_out(words), words);
    EXPECT_EQ(gar_text_out("A\r\nB\tC"), "A  B C");
}

TEST_F(GarComment, OfAReceiverIsTakenAsItIsButForControlCharacters)
{
    EXPECT_EQ(gar_text_in(" Lake\tside " + zeros(1) + "rest"), "Lake side");
    EXPECT_EQ(gar_text_in("____"), "");
    EXPECT_EQ(gar_text_in("_A_"), "_A_");
    EXPECT_EQ(gar_text_in(""), "");
}

TEST_F(GarComment, NamesGoOutClean)
{
    EXPECT_EQ(gar_name_out(" Höhle 1 "_w), "HOHLE-1");
    EXPECT_EQ(gar_name_out("A\nB"), "A-B");
    store.wp_ext_chars = true;
    EXPECT_EQ(gar_name_out("A+B 1"), "A+B 1");
}

TEST_F(GarComment, OfTextRecordsHoldsFiftyCharacters)
{
    wayp_rec rec = hut();
    rec.kom = std::string(60, 'K');
    const std::string data = encoded(rec, 109);
    EXPECT_NE(data.find("HUT" + zeros(1) + std::string(50, 'K') + zeros(5)), std::string::npos);
}

// Colour
// -------------------------------------------------------------------------------------------------

TEST_F(GarComment, EveryColourHasItsCode)
{
    const char* codes[] = {"&BL", "&DR", "&DG", "&DY", "&DB", "&DM", "&DC", "&LA",
                           "&DA", "&R",  "&G",  "&Y",  "&B",  "&M",  "&C",  "&W"};
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(gar_color_code(i), codes[i]);
        std::string comment = std::string("HUT") + codes[i];
        int colour = -1;
        gar_color_cut(comment, colour);
        EXPECT_EQ(colour, i);
        EXPECT_EQ(comment, "HUT");
    }
    for (const int none : {-1, 16, 31, 254, 255})
        EXPECT_EQ(gar_color_code(none), "");
}

TEST_F(GarComment, ColourCodeIsCutWithAStrayMarkInFrontOfIt)
{
    std::string comment = "HUT&&DR";
    int colour = -1;
    gar_color_cut(comment, colour);
    EXPECT_EQ(comment, "HUT");
    EXPECT_EQ(colour, 1);
    for (const char* none : {"HUT", "", "&", "R", "HUT&X", "HUT&dr", "LA&", "D&D"}) {
        comment = none;
        gar_color_cut(comment, colour);
        EXPECT_EQ(comment, none);
        EXPECT_EQ(colour, gar_no_colour);
    }
    comment = "&W";
    gar_color_cut(comment, colour);
    EXPECT_EQ(comment, "");
    EXPECT_EQ(colour, 15);
}

TEST_F(GarComment, ColourOfTheD108FamilyComesAndGoesWithTheComment)
{
    for (int colour = 0; colour < 16; ++colour) {
        const std::string code = gar_color_code(colour);
        wayp_rec rec = hut();
        rec.kom = "LAKE" + code;
        EXPECT_EQ(static_cast<int>(encoded(rec, 108)[1]), colour);
        EXPECT_EQ(encoded(rec, 109)[2] & 31, colour);
        for (const int type : {108, 109, 110})
            EXPECT_EQ(there_and_back(rec.kom, type), rec.kom) << type;
    }
    EXPECT_EQ(there_and_back("&BL", 109), "&BL");
}

TEST_F(GarComment, ColourOf31Or255OrTransparentGivesNoCode)
{
    std::string data = encoded(hut(), 109);
    EXPECT_EQ(data[2] & 31, 31);
    EXPECT_EQ(comment_of(data, 109), "HUT ABOVE LAKE");
    data = encoded(hut(), 110);
    data[2] = 16; // transparent
    EXPECT_EQ(comment_of(data, 110), "HUT ABOVE LAKE");
    data = encoded(hut(), 108);
    EXPECT_EQ(data[1], '\xFF');
    EXPECT_EQ(comment_of(data, 108), "HUT ABOVE LAKE");
}

TEST_F(GarComment, ColourOfD107IsRedGreenOrBlue)
{
    receiver.gar_symbol_set = 1;
    const char* codes[] = {"", "&R", "&G", "&B"};
    for (int i = 0; i < 4; ++i) {
        wayp_rec rec = hut();
        rec.kom = std::string("LAKE") + codes[i];
        const std::string data = encoded(rec, 107);
        EXPECT_EQ(data.substr(18, 40), packed("LAKE"));
        EXPECT_EQ(data[64], static_cast<char>(i));
        EXPECT_EQ(comment_of(data, 107), rec.kom);
    }
    std::string data = encoded(hut(), 107);
    data[64] = 4;
    EXPECT_EQ(comment_of(data, 107), "HUT ABOVE LAKE");
}

// Depth
// -------------------------------------------------------------------------------------------------

TEST_F(GarComment, DepthStandsBehindTheWordsInTheChosenUnit)
{
    gar_field_writer depth;
    depth.real(3.5F);
    std::string data = encoded(hut(), 109);
    data.replace(36, 4, depth.out);
    EXPECT_EQ(comment_of(data, 109), "HUT ABOVE LAKE $ 3.5 m");
    data[2] = 0x20 | 1; // dark red
    EXPECT_EQ(comment_of(data, 109), "HUT ABOVE LAKE $ 3.5 m &DR");
    use_feet();
    EXPECT_EQ(comment_of(data, 109), "HUT ABOVE LAKE $ 11.5 ft &DR");
    EXPECT_EQ(comment_of(encoded(hut(), 109), 109), "HUT ABOVE LAKE");
}

TEST_F(GarComment, DepthIsTakenOutOfTheCommentWhenItIsSent)
{
    const struct {
        const char* comment;
        const char* rest;
        float depth;
    } cases[] = {{"LAKE $ 3.5 m", "LAKE", 3.5F},
                 {"LAKE $ 3.5 m SIDE", "LAKE SIDE", 3.5F},
                 {"$ 10 ft", "", 3.048F},
                 {"LAKE $ 2,5 m", "LAKE", 2.5F},
                 {"LAKE $-1 ft&DR", "LAKE&DR", -0.3048F},
                 {"$ 3 m SIDE", "SIDE", 3.0F},
                 {"LAKE", "LAKE", gar_no_value},
                 {"LAKE $ 3.5", "LAKE $ 3.5", gar_no_value},
                 {"LAKE $ 3.5 M", "LAKE $ 3.5 M", gar_no_value}, // small letters only
                 {"ENTRY $ 5, shop", "ENTRY $ 5, shop", gar_no_value},
                 {"ENTRY $ 5, mall", "ENTRY $ 5, mall", gar_no_value},
                 {"", "", gar_no_value}};
    for (const auto& c : cases) {
        std::string comment = c.comment;
        EXPECT_FLOAT_EQ(gar_depth_cut(comment), c.depth) << c.comment;
        EXPECT_EQ(comment, c.rest) << c.comment;
    }
}

TEST_F(GarComment, DepthComesBackFromTheD108FamilyInEitherUnit)
{
    for (const int type : {108, 109, 110}) {
        EXPECT_EQ(there_and_back("LAKE $ 3.5 m &DR", type), "LAKE $ 3.5 m &DR");
        EXPECT_EQ(there_and_back("LAKE $ 11.5 ft", type), "LAKE $ 3.5 m");
        EXPECT_EQ(there_and_back("$ 3.5 m", type), "$ 3.5 m");
    }
    EXPECT_EQ(there_and_back("LAKE $ 3.5 m", 103), "LAKE - 3-5 M"); // no field: sent as it stands
}

// Height
// -------------------------------------------------------------------------------------------------

TEST_F(GarComment, HeightGoesInFrontAndComesOut)
{
    const struct {
        const char* comment;
        const char* sent;
    } cases[] = {{"HUT", "412 m HUT"},
                 {"", "412 m"},
                 {"@ADE HUT", "@ADE 412 m  HUT"},
                 {"@123HUT", "@123 412 m HUT"},
                 {"@123", "@123 412 m"}};
    for (const auto& c : cases) {
        std::string comment = c.comment;
        gar_alt_to_comment(comment, 412);
        EXPECT_EQ(comment, c.sent);
        std::int16_t alt = alt_unknown;
        EXPECT_TRUE(gar_alt_from_comment(comment, alt)) << c.sent;
        EXPECT_EQ(alt, 412);
        EXPECT_EQ(comment, c.comment);
    }
    std::string comment = "HUT";
    gar_alt_to_comment(comment, alt_unknown);
    EXPECT_EQ(comment, "HUT");
    comment = "@A"; // all of it is the key's
    gar_alt_to_comment(comment, 412);
    EXPECT_EQ(comment, "@A");
}

TEST_F(GarComment, EveryHeightSurvivesFeet)
{
    use_feet();
    for (int alt = -32767; alt <= 32767; alt += 7) {
        std::string comment = "HUT";
        gar_alt_to_comment(comment, static_cast<std::int16_t>(alt));
        std::int16_t back = alt_unknown;
        ASSERT_TRUE(gar_alt_from_comment(comment, back)) << comment;
        EXPECT_EQ(back, alt);
        EXPECT_EQ(comment, "HUT");
    }
}

TEST_F(GarComment, HeightIsOnlyReadWhereItStandsWholeInFront)
{
    const char* none[] = {"",          "HUT",     "412",       "412m HUT", "412 meter",
                          "412 mx",    "- m",     "m",         " m HUT",   "HUT 412 m",
                          "9999999 m", "40000 m", "@123412 m", "412  m"};
    for (const char* text : none) {
        std::string comment = text;
        std::int16_t alt = 7;
        EXPECT_FALSE(gar_alt_from_comment(comment, alt)) << text;
        EXPECT_EQ(alt, 7);
        EXPECT_EQ(comment, text);
    }
    std::string comment = "-12 M HUT"; // as the receiver may show it
    std::int16_t alt = 0;
    EXPECT_TRUE(gar_alt_from_comment(comment, alt));
    EXPECT_EQ(alt, -12);
    comment = "1352 FT";
    EXPECT_TRUE(gar_alt_from_comment(comment, alt));
    EXPECT_EQ(alt, 412);
    EXPECT_EQ(comment, "");
}

TEST_F(GarComment, HeightTravelsInTheCommentWithItsOptionOnly)
{
    receiver.gar_symbol_set = 1;
    EXPECT_EQ(decoded(encoded(hut(), 103), 103).alt, alt_unknown);
    settings.alt_kom = true;
    const std::string data = encoded(hut(), 103);
    EXPECT_EQ(data.substr(18, 40), packed("412 M HUT ABOVE LAKE"));
    gar_wp_in in = decoded(data, 103);
    EXPECT_EQ(in.alt, 412);
    EXPECT_EQ(in.comment, "HUT ABOVE LAKE");
    settings.alt_kom = false;
    in = decoded(data, 103);
    EXPECT_EQ(in.alt, alt_unknown);
    EXPECT_EQ(in.comment, "412 M HUT ABOVE LAKE");
}

TEST_F(GarComment, HeightOfTheRecordComesAheadOfTheCommentsHeight)
{
    settings.alt_kom = true;
    gar_wp_in in = decoded(encoded(hut(), 110), 110);
    EXPECT_EQ(in.alt, 412);
    EXPECT_EQ(in.comment, "HUT ABOVE LAKE"); // the same height: it was put there on sending
    wayp_rec rec = hut();
    rec.kom = "300 M HUT";
    settings.alt_kom = false;
    const std::string data = encoded(rec, 110);
    settings.alt_kom = true;
    in = decoded(data, 110);
    EXPECT_EQ(in.alt, 412);
    EXPECT_EQ(in.comment, "300 M HUT");
}

// Facilities
// -------------------------------------------------------------------------------------------------

TEST_F(GarComment, ClassLettersAreThoseOfTheirType)
{
    const struct {
        int type, first;
        const char* letters;
        int user;
    } rows[] = {{108, 64, "AINVRTD", 0}, {109, 64, "AINVRTD", 0}, {110, 64, "AINVRTD", 0},
                {150, 0, "AINV RT", 4},  {450, 0, "AINV RT", 4},  {151, 0, "AV", 2},
                {152, 0, "AINV", 4},     {155, 0, "AINV", 4},     {154, 0, "AINV RTDS", 4}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.type);
        EXPECT_EQ(gar_class_default(r.type), r.user);
        for (int i = 0; r.letters[i] != 0; ++i) {
            const char letter = r.letters[i];
            EXPECT_EQ(gar_class_letter(r.type, r.first + i), letter == ' ' ? 0 : letter);
            EXPECT_EQ(gar_class_of(r.type, letter), letter == ' ' ? -1 : r.first + i);
        }
        EXPECT_EQ(gar_class_letter(r.type, 128), 0);
        EXPECT_EQ(gar_class_letter(r.type, r.user), 0);
        EXPECT_EQ(gar_class_of(r.type, ' '), -1);
        EXPECT_EQ(gar_class_of(r.type, 'Z'), -1);
    }
    EXPECT_EQ(gar_class_letter(100, 0), 0);
    EXPECT_EQ(gar_class_of(100, 'A'), -1);
}

TEST_F(GarComment, FacilityMarkerTravelsAsClassAndCountry)
{
    set(gar_place::AVD, 1);
    const struct {
        int type;
        std::size_t place, country;
    } rows[] = {{108, 0, 46},    {109, 1, 46},    {110, 1, 46},    {150, 8, 6},    {450, 10, 8},
                {151, 123, 120}, {152, 123, 120}, {154, 123, 120}, {155, 123, 120}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.type);
        wayp_rec rec = hut();
        rec.kom = "@VDE RADIO";
        const std::string data = encoded(rec, r.type, true);
        EXPECT_EQ(data[r.place], static_cast<char>(gar_class_of(r.type, 'V')));
        EXPECT_EQ(data.substr(r.country, 2), "DE");
        EXPECT_EQ(data.find('@'), std::string::npos);
        EXPECT_EQ(comment_of(data, r.type), "@VDE RADIO");
    }
}

TEST_F(GarComment, FacilityMarkerStaysInTheTextWithoutAVD)
{
    wayp_rec rec = hut();
    rec.kom = "@VDE RADIO";
    for (const bool avd : {false, true})
        for (const bool proximity : {false, true}) {
            if (avd && proximity)
                continue;
            set(gar_place::AVD, avd ? 1 : 0);
            const std::string data = encoded(rec, 154, proximity);
            EXPECT_EQ(data[123], 4);
            EXPECT_EQ(data.substr(120, 2), "  ");
            EXPECT_EQ(data.substr(18, 40), packed("@VDE RADIO"));
            EXPECT_EQ(comment_of(data, 154), "@VDE RADIO");
        }
}

TEST_F(GarComment, FacilityMarkerThatTheTypeDoesNotKnowStaysInTheText)
{
    set(gar_place::AVD, 1);
    wayp_rec rec = hut();
    rec.kom = "@SDE POINT"; // a class of D154
    EXPECT_EQ(encoded(rec, 152, true).substr(18, 40), packed("@SDE POINT"));
    EXPECT_EQ(encoded(rec, 154, true).substr(18, 40), packed("POINT"));
    rec.kom = "@ DE POINT"; // the blank among the letters is the user's class
    const std::string data = encoded(rec, 154, true);
    EXPECT_EQ(data[123], 4);
    EXPECT_EQ(data.substr(18, 40), packed("@ DE POINT"));
    rec.kom = "@";
    EXPECT_EQ(encoded(rec, 154, true)[123], 4);
}

TEST_F(GarComment, FacilityMarkerWithoutACountryIsSentInTheTextTooAndReadOnce)
{
    set(gar_place::AVD, 1);
    wayp_rec rec = hut();
    rec.kom = "@A   FIELD";
    const std::string data = encoded(rec, 109, true);
    EXPECT_EQ(data[1], 64);
    EXPECT_EQ(data.substr(46, 2), "  ");
    EXPECT_NE(data.find("@A   FIELD"), std::string::npos);
    EXPECT_EQ(comment_of(data, 109), "@A   FIELD");
}

std::string airport_109(const std::string& comment, const std::string& height)
{
    return raw("01 40 1F 70 1200") + user_subclass + pos_bytes + height + no_value + no_value +
           "BWDE" + zeros(4) + "EDTF" + zeros(1) + comment + zeros(1) + "FREIBURG" + zeros(1) +
           "UMKIRCH" + zeros(1) + "STREET" + zeros(1) + zeros(1);
}

TEST_F(GarComment, OfAFacilityWithoutOneIsMadeOfItsNames)
{
    EXPECT_EQ(comment_of(airport_109("", metres_412), 109), "@ADE BW FREIBURG UMKIRCH 412M");
    EXPECT_EQ(comment_of(airport_109("GRASS", metres_412), 109), "@ADE GRASS");
    EXPECT_EQ(comment_of(airport_109("", zeros(4)), 109), "@ADE BW FREIBURG UMKIRCH");
    EXPECT_EQ(comment_of(airport_109("", no_value), 109), "@ADE BW FREIBURG UMKIRCH");
    std::string radio = airport_109("", metres_412);
    radio[1] = 0x43;
    EXPECT_EQ(comment_of(radio, 109), "@VDE BW FREIBURG UMKIRCH");
    radio[1] = 0;
    EXPECT_EQ(comment_of(radio, 109), "");
}

TEST_F(GarComment, CityThatEqualsTheFacilityIsLeftOut)
{
    std::string data = airport_109("", no_value);
    data.replace(data.find("UMKIRCH"), 7, "FREIBURG");
    EXPECT_EQ(comment_of(data, 109), "@ADE BW FREIBURG");
}

TEST_F(GarComment, OfAnAirportOfAnAviationReceiverIsMadeOfItsNames)
{
    const auto airport = [](const std::string& comment, const std::string& name) {
        return "EDTF  " + pos_bytes + zeros(4) + fixed_text(comment, 40) + no_value +
               fixed_text(name, 30) + fixed_text("UMKIRCH", 24) + "BW" + raw("9C01") + "DE" +
               zeros(2);
    };
    EXPECT_EQ(comment_of(airport("", "FREIBURG"), 152), "@ADE BW FREIBURG UMKIRCH 412M");
    EXPECT_EQ(comment_of(airport("", ""), 152), "@ADE");
    EXPECT_EQ(comment_of(airport("GRASS", "FREIBURG"), 152), "@ADE GRASS");
    EXPECT_EQ(decoded(airport("", "FREIBURG"), 152).alt, 412);
}

} // namespace
} // namespace velkoro

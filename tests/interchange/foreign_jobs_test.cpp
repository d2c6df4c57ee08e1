#include "interchange/foreign_jobs.h"

#include "core/cmd_open.h"
#include "core/settings.h"
#include "interchange/import_job.h"
#include "tests/interchange/file_fixture.h"

using namespace velkoro;

namespace {

class ForeignJobs : public FileTest {};

const std::string corpscon = "##Name,Latitude,Longitude\r\nALPHA,N48.12345\xB0,E011.56789\xB0\r\n"
                             "BETA,N49.5\xB0,E012.5\xB0\r\n";

} // namespace

TEST_F(ForeignJobs, AFileIsReadByItsExtensionAndIsNotTheFileInUse)
{
    home.put("points.geo", corpscon);
    EXPECT_TRUE(foreign_read({file("points.geo")}));
    ASSERT_EQ(store.wp_top, 1);
    EXPECT_EQ(store.wp[0].nam, "ALPHA");
    EXPECT_EQ(settings.wp_file, "");
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_TRUE(outside.messages.empty());
    EXPECT_EQ(op.akt.caption, "points.geo");
}

TEST_F(ForeignJobs, AMissingFileIsTold)
{
    EXPECT_FALSE(foreign_read({file("none.geo")}));
    EXPECT_EQ(outside.numbers(), (std::vector<int>{7740}));
}

TEST_F(ForeignJobs, AFileOfNoKnownKindIsTold)
{
    home.put("strange.xyz", "rubbish");
    EXPECT_FALSE(foreign_read({file("strange.xyz")}));
    EXPECT_EQ(outside.numbers(), (std::vector<int>{7962}));
    EXPECT_FALSE(foreign_open(file("strange.xyz")));
}

TEST_F(ForeignJobs, MalformedLinesStandInTheResultWindow)
{
    home.put("points.geo", corpscon + "GAMMA,north,east\r\n");
    std::string shown;
    platform.wait_closed = [&](window& w) {
        if (&w == &op2.form)
            shown = op2.anz.caption;
        w.shown = false;
    };
    EXPECT_TRUE(foreign_read({file("points.geo")}));
    EXPECT_EQ(shown, text(7960, "1", "4"));
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(ForeignJobs, SeveralFilesAreReadInOrderIntoOneList)
{
    home.put("one.geo", corpscon);
    home.put("two.geo", "DELTA,S12.5\xB0,W045.25\xB0\r\n");
    EXPECT_TRUE(foreign_read({file("one.geo"), file("two.geo")}));
    ASSERT_EQ(store.wp_top, 2);
    EXPECT_LT(store.wp[2].pos.lat, 0);
}

TEST_F(ForeignJobs, AnExportEndsWithOKInTheJobWindow)
{
    add("ALPHA", 48.12345, 11.56789);
    EXPECT_TRUE(foreign_write(file("out.geo"), *format_of_text("CORPSCON"), {}));
    EXPECT_EQ(op.anz.caption, "OK");
    EXPECT_NE(home.get("out.geo").find("ALPHA,"), std::string::npos);
    EXPECT_TRUE(outside.messages.empty());
}

TEST_F(ForeignJobs, AFileThatCannotBeWrittenEndsInTheTrapOfTheJob)
{
    add("ALPHA", 48.12345, 11.56789);
    EXPECT_FALSE(foreign_write(file("no/such/folder/out.geo"), *format_of_text("CORPSCON"), {}));
    ASSERT_EQ(outside.messages.size(), 1U);
    EXPECT_TRUE(outside.messages[0].text.ends_with(" in D_W_Schreiben"))
        << outside.messages[0].text;
}

TEST_F(ForeignJobs, CancelKeepsWhatWasRead)
{
    std::string many;
    for (int i = 0; i < 3000; ++i)
        many += "N" + std::to_string(i) + ",N" + std::to_string(10 + i * 0.01) + ",E011.5\r\n";
    home.put("many.geo", many);
    platform.ticks = [t = 0.0]() mutable { return t += 0.1; };
    outside.on_pump = [] { job.op_cancel = true; };
    EXPECT_FALSE(foreign_read({file("many.geo")}));
    EXPECT_EQ(outside.numbers(), (std::vector<int>{2420}));
    EXPECT_GT(store.wp_top, 0);
    EXPECT_LT(store.wp_top, 2999);
}

TEST_F(ForeignJobs, AFileNamedFromOutsideIsReadWithoutTheWindow)
{
    home.put("points.geo", corpscon);
    cmd_open(file("points.geo"), false);
    EXPECT_EQ(store.wp_top, 1);
}

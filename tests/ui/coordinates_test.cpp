/// The drop-downs and menus of coordinates over a large list: what they offer, and that rows are
/// written when they are shown.
#include "tests/ui/program_fixture.h"

#include "coords/datum.h"
#include "core/settings.h"
#include "waypoints/list.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

namespace velkoro::test {
namespace {

constexpr int many = 32000;
constexpr int position_column = static_cast<int>(list_col::position);

class Coordinates : public ProgramTest {
protected:
    int reads = 0, lowest = 0;

    void begin(int waypoints)
    {
        ASSERT_TRUE(start());
        store.wp.clear();
        for (int i = 0; i < waypoints; ++i)
            store.wp.push_back({.nam = "W" + std::to_string(i),
                                .pos = {550000000 + i * 1000, 100000000 + i * 1000}});
        store.wp_top = static_cast<std::int16_t>(waypoints - 1);
        list_refill();
        // Every text that the list asks for is counted.
        rows().cell = [this, cell = rows().cell](int row, int column) {
            ++reads;
            lowest = std::max(lowest, row);
            return cell(row, column);
        };
        top().resize(1000, 700);
        binder_flush();
        wait_for([] { return false; }, 50);
    }
    /// Chooses an entry of a drop-down by the keyboard.
    static void pick(control& box, const std::string& entry)
    {
        auto* b = widget<QComboBox>(box);
        const int wanted = b->findText(QString::fromStdString(entry));
        ASSERT_GE(wanted, 0) << entry;
        b->setFocus();
        while (b->currentIndex() != wanted) {
            const int before = b->currentIndex();
            QTest::keyClick(b, before < wanted ? Qt::Key_Down : Qt::Key_Up);
            ASSERT_NE(b->currentIndex(), before);
        }
    }
    /// The position of a row; the column begins with blanks.
    static std::string shown(int row)
    {
        return list().model()->index(row, position_column).data().toString().toStdString();
    }
    static std::string chosen_datum()
    {
        return widget<QComboBox>(Form1.Datum)->currentText().toStdString();
    }
};

TEST_F(Coordinates, AChangeWritesTheRowsInViewOnly)
{
    begin(many);
    list().grab();
    const int in_view = lowest;
    ASSERT_GT(in_view, 3);
    ASSERT_LT(in_view, 60);
    const std::function<void()> changes[] = {
        [] { pick(Form1.posform, "UTM"); },
        [] { pick(Form1.Datum, "Potsdam"); },
        [] { pick(Form1.zone, "Zone 33"); },
        [] { choose(Form1.ei_grid_u[1]); },
        [] { choose(Form1.ei_grid_u[0]); },
        [] { choose(Form1.einh_alt[1]); },
        [] { pick(Form1.posform, "hddd.ddddd\xC2\xB0"); },
    };
    for (const auto& change : changes) {
        const std::string before = shown(0);
        reads = lowest = 0;
        QElapsedTimer time;
        time.start();
        change();
        list().grab();
        EXPECT_LE(lowest, in_view + 1) << before;
        EXPECT_LT(reads, (in_view + 2) * list_cols * 4) << before;
        EXPECT_LT(time.elapsed(), 500) << before; // the sanitizers take most of it
    }
}

TEST_F(Coordinates, RowsFollowFormatDatumZoneAndMetres)
{
    begin(3);
    const std::string degrees = shown(0);
    EXPECT_TRUE(degrees.find("N ") != std::string::npos) << degrees;
    pick(Form1.posform, "UTM");
    const std::string utm = shown(0);
    EXPECT_TRUE(utm.find("32T ") != std::string::npos) << utm;
    pick(Form1.zone, "Zone 33");
    EXPECT_TRUE(shown(0).find("33T ") != std::string::npos) << shown(0);
    pick(Form1.zone, "Zone auto");
    EXPECT_EQ(shown(0), utm);
    pick(Form1.Datum, "Potsdam");
    EXPECT_NE(shown(0), utm);
    const bool metres = !settings.km_grid;
    choose(Form1.ei_grid_u[metres ? 1 : 0]);
    EXPECT_EQ(shown(0).find('.') != std::string::npos, metres);
}

TEST_F(Coordinates, TheZoneStandsWhereItHasAMeaningAndTheDatumFollowsTheFormat)
{
    begin(1);
    const struct {
        const char* format;
        int zones;
        const char* first;
        const char* last;
        const char* chosen;
    } rows[] = {{"UTM", 61, "Zone auto", "Zone 60", "Zone auto"},
                {"MGRS", 61, "Zone auto", "Zone 60", "Zone auto"},
                {"(D) Gau\xC3\x9F-Kr\xC3\xBCger", 7, "Zone auto", "Zone 5", "Zone auto"},
                {"(CH) Swiss Grid", 0, "", "", ""},
                {"(F) Lambert", 5, "Zone auto", "Zone 4", "Zone 2 \xC3\xA9td"},
                {"(GB) British Grid", 0, "", "", ""},
                {"(IRL) Irish Grid", 0, "", "", ""},
                {"(NZ) New Zealand Grid", 0, "", "", ""},
                {"(A) BMN M28", 0, "", "", ""},
                {"hddd\xC2\xB0mm'ss.s\"", 0, "", "", ""}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.format);
        pick(Form1.posform, r.format);
        auto* zones = widget<QComboBox>(Form1.zone);
        EXPECT_EQ(zones->isVisible(), r.zones > 0);
        if (r.zones > 0) {
            EXPECT_EQ(zones->count(), r.zones);
            EXPECT_EQ(zones->itemText(0).toStdString(), r.first);
            EXPECT_EQ(zones->itemText(zones->count() - 1).toStdString(), r.last);
            EXPECT_EQ(zones->currentText().toStdString(), r.chosen);
        }
        const auto fmt = static_cast<std::size_t>(Form1.posform.selected);
        EXPECT_EQ(chosen_datum(), datums.grid_datum[fmt]);
        pick(Form1.Datum, "WGS 72"); // the choice of the user stays until the next format
        EXPECT_EQ(chosen_datum(), "WGS 72");
    }
}

} // namespace
} // namespace velkoro::test

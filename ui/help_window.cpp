#include "ui/help_window.h"

#include "core/files.h"
#include "core/help_pages.h"
#include "core/texts.h"
#include "ui/icon_paint.h"
#include "ui/look.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

namespace velkoro {
namespace {

constexpr int default_width = 900, default_height = 640, contents_width = 270, row_air = 6;
constexpr int page_margin = 18, row_gap = 8;
constexpr int least_zoom = -4, most_zoom = 12; ///< points away from the general font
constexpr int snippet_before = 24, snippet_length = 70;
constexpr int most_hits = 2000; ///< highlighted places of a page
constexpr int topic_role = Qt::UserRole;

struct help_page {
    help_topic topic{};
    QString title{}, plain{}; ///< plain: the words alone, for the search
};

QString path_q(const std::string& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path));
}

QString read_page(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList words_of(const QString& wanted)
{
    return wanted.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// How well a page fits: 0 not at all; a word in the title counts most.
int rank_of(const help_page& page, const QStringList& words)
{
    int rank = 0;
    for (const QString& word : words) {
        const auto times = static_cast<int>(page.plain.count(word, Qt::CaseInsensitive));
        const bool in_title = page.title.contains(word, Qt::CaseInsensitive);
        if (times == 0 && !in_title)
            return 0;
        rank += std::min(times, 50) + (in_title ? 1000 : 0);
    }
    return rank;
}

/// The surroundings of the first word in a page.
QString snippet_of(const help_page& page, const QStringList& words)
{
    const auto at = page.plain.indexOf(words.front(), 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    auto from = std::max<qsizetype>(0, at - snippet_before);
    if (const auto blank = page.plain.indexOf(QLatin1Char(' '), from); from > 0 && blank < at)
        from = blank + 1;
    const QString part = page.plain.mid(from, snippet_length).trimmed();
    return (from > 0 ? QStringLiteral("… ") : QString()) + part + QStringLiteral(" …");
}

class help_window : public QWidget {
public:
    help_window();
    void open(const QString& topic);
    void load_language();
    void stand_beside(QWidget* modal);
    int language() const { return language_; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QToolButton* add_button(const char* icon, const char* name);
    void add_key(const QKeySequence& keys, void (help_window::*action)());
    void name_widgets();
    void show_contents();
    void search();
    void choose(const QTreeWidgetItem* item);
    void page_changed();
    void highlight(bool go_to_first);
    void zoom(int steps);
    void dress();
    QString topic_now() const;
    void larger() { zoom(zoom_ + 1); }
    void smaller() { zoom(zoom_ - 1); }
    void normal_size() { zoom(0); }
    void go_back() { text_->backward(); }
    void go_forward() { text_->forward(); }
    void go_search()
    {
        search_->setFocus(Qt::ShortcutFocusReason);
        search_->selectAll();
    }
    void leave() { close(); }

    QLineEdit* search_ = nullptr;
    QTreeWidget* contents_ = nullptr;
    QTextBrowser* text_ = nullptr;
    QToolButton *back_ = nullptr, *forward_ = nullptr, *smaller_ = nullptr, *larger_ = nullptr;
    std::vector<help_page> pages_{};
    QString folder_{};
    int language_ = -1;
    int zoom_ = 0;
    bool selecting_ = false; ///< the program moves the selection of the contents
};

struct help_state {
    QPointer<help_window> window{};
    QPointer<QObject> key_listener{};
};
help_state help;

help_window::help_window()
{
    setObjectName(QStringLiteral("help"));
    setWindowFlag(Qt::Window);
    resize(default_width, default_height);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(12, 12, 12, 12);
    rows->setSpacing(row_gap);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(row_gap);
    rows->addLayout(bar);
    search_ = new QLineEdit;
    search_->setObjectName(QStringLiteral("help_search"));
    search_->setClearButtonEnabled(true);
    search_->setFixedWidth(contents_width);
    bar->addWidget(search_);
    back_ = add_button("back", "help_back");
    forward_ = add_button("chev_right", "help_forward");
    bar->addWidget(back_);
    bar->addWidget(forward_);
    bar->addStretch(1);
    smaller_ = add_button("zoom_out", "help_smaller");
    larger_ = add_button("zoom_in", "help_larger");
    bar->addWidget(smaller_);
    bar->addWidget(larger_);

    auto* halves = new QSplitter(Qt::Horizontal);
    contents_ = new QTreeWidget;
    contents_->setObjectName(QStringLiteral("help_contents"));
    contents_->setHeaderHidden(true);
    contents_->setRootIsDecorated(false);
    contents_->setItemsExpandable(false);
    contents_->setTextElideMode(Qt::ElideRight);
    contents_->setFrameShape(QFrame::NoFrame);
    text_ = new QTextBrowser;
    text_->setObjectName(QStringLiteral("help_text"));
    text_->setFrameShape(QFrame::NoFrame);
    text_->setOpenExternalLinks(false);
    text_->setTextInteractionFlags(text_->textInteractionFlags() | Qt::LinksAccessibleByKeyboard |
                                   Qt::TextSelectableByKeyboard);
    halves->addWidget(contents_);
    halves->addWidget(text_);
    halves->setStretchFactor(1, 1);
    halves->setSizes({contents_width, default_width - contents_width});
    halves->setChildrenCollapsible(false);
    rows->addWidget(halves, 1);
    QWidget* const order[] = {search_, contents_, text_, back_, forward_, smaller_, larger_};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    connect(search_, &QLineEdit::textChanged, this, [this] { search(); });
    connect(search_, &QLineEdit::returnPressed, this, [this] {
        if (const QTreeWidgetItem* first = contents_->topLevelItem(0);
            first && !search_->text().trimmed().isEmpty())
            choose(first);
        text_->setFocus();
    });
    connect(contents_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (!selecting_ && item)
            choose(item);
    });
    connect(contents_, &QTreeWidget::itemClicked, this,
            [this](const QTreeWidgetItem* item) { choose(item); });
    // sourceChanged comes before source() tells the new page.
    connect(text_, &QTextBrowser::historyChanged, this, [this] { page_changed(); });
    connect(text_, &QTextBrowser::backwardAvailable, back_, &QWidget::setEnabled);
    connect(text_, &QTextBrowser::forwardAvailable, forward_, &QWidget::setEnabled);
    connect(back_, &QToolButton::clicked, this, &help_window::go_back);
    connect(forward_, &QToolButton::clicked, this, &help_window::go_forward);
    connect(smaller_, &QToolButton::clicked, this, &help_window::smaller);
    connect(larger_, &QToolButton::clicked, this, &help_window::larger);
    back_->setEnabled(false);
    forward_->setEnabled(false);

    add_key(Qt::Key_Escape, &help_window::leave);
    add_key(Qt::CTRL | Qt::Key_F, &help_window::go_search);
    add_key(Qt::ALT | Qt::Key_Left, &help_window::go_back);
    add_key(Qt::ALT | Qt::Key_Right, &help_window::go_forward);
    add_key(Qt::CTRL | Qt::Key_Plus, &help_window::larger);
    add_key(Qt::CTRL | Qt::Key_Equal, &help_window::larger);
    add_key(Qt::CTRL | Qt::Key_Minus, &help_window::smaller);
    add_key(Qt::CTRL | Qt::Key_0, &help_window::normal_size);
    dress();
}

QToolButton* help_window::add_button(const char* icon, const char* name)
{
    auto* b = new QToolButton;
    b->setObjectName(QLatin1String(name));
    b->setIcon(make_icon(QLatin1String(icon)));
    b->setIconSize({icon_size, icon_size});
    b->setAutoRaise(true);
    return b;
}

void help_window::add_key(const QKeySequence& keys, void (help_window::*action)())
{
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
}

void help_window::name_widgets()
{
    const auto name = [](QWidget* w, const QString& words) {
        w->setAccessibleName(words);
        w->setToolTip(words);
    };
    search_->setPlaceholderText(to_q(text(7901)));
    search_->setAccessibleName(to_q(text(7901)));
    contents_->setAccessibleName(to_q(text(7904)));
    text_->setAccessibleName(to_q(text(7909)));
    name(back_, to_q(text(7902)));
    name(forward_, to_q(text(7903)));
    name(larger_, to_q(text(7906)));
    name(smaller_, to_q(text(7907)));
}

/// Reads every page: there are some twenty, a few kilobytes each.
void help_window::load_language()
{
    const QString topic = topic_now();
    language_ = text_table.language;
    folder_ = path_q(help_folder());
    pages_.clear();
    for (const help_topic& t : help_contents()) {
        QTextDocument words;
        words.setHtml(read_page(folder_ + to_q(t.topic) + QStringLiteral(".html")));
        pages_.push_back({t, to_q(t.title), words.toPlainText().simplified()});
    }
    name_widgets();
    search();
    if (!topic.isEmpty()) {
        open(topic);
        text_->clearHistory(); // its pages are those of the other language
    }
}

void help_window::open(const QString& topic)
{
    if (pages_.empty())
        return;
    const auto known = std::ranges::find_if(
        pages_, [&](const help_page& p) { return to_q(p.topic.topic) == topic; });
    const help_page& page = known == pages_.end() ? pages_.front() : *known;
    text_->setSource(
        QUrl::fromLocalFile(folder_ + to_q(page.topic.topic) + QStringLiteral(".html")));
}

QString help_window::topic_now() const
{
    const QString file = text_->source().fileName();
    return file.left(file.lastIndexOf(QLatin1Char('.')));
}

void help_window::show_contents()
{
    QTreeWidgetItem* chapter = nullptr;
    for (const help_page& p : pages_) {
        const bool below = p.topic.level > 1 && chapter;
        auto* item = below ? new QTreeWidgetItem(chapter) : new QTreeWidgetItem(contents_);
        item->setText(0, p.title);
        item->setToolTip(0, p.title);
        item->setSizeHint(0, {0, contents_->fontMetrics().height() + row_air});
        item->setData(0, topic_role, to_q(p.topic.topic));
        if (!below)
            chapter = item;
    }
    contents_->expandAll();
}

void help_window::search()
{
    selecting_ = true;
    contents_->clear();
    const QStringList words = words_of(search_->text());
    if (words.isEmpty()) {
        show_contents();
    } else {
        std::vector<std::pair<int, const help_page*>> hits;
        for (const help_page& p : pages_)
            if (const int rank = rank_of(p, words); rank > 0)
                hits.emplace_back(rank, &p);
        std::ranges::stable_sort(hits,
                                 [](const auto& a, const auto& b) { return a.first > b.first; });
        for (const auto& [rank, page] : hits) {
            auto* item = new QTreeWidgetItem(contents_);
            const QString snippet = snippet_of(*page, words);
            item->setText(0, page->title + QLatin1Char('\n') + snippet);
            item->setToolTip(0, snippet);
            item->setData(0, topic_role, to_q(page->topic.topic));
        }
        if (hits.empty()) {
            auto* none = new QTreeWidgetItem(contents_);
            none->setText(0, to_q(text(7905)));
            none->setFlags(Qt::NoItemFlags);
        }
    }
    selecting_ = false;
    page_changed();
}

void help_window::choose(const QTreeWidgetItem* item)
{
    const QString topic = item->data(0, topic_role).toString();
    if (topic.isEmpty())
        return;
    if (topic != topic_now() || text_->source().hasFragment())
        open(topic);
    highlight(true);
}

/// The contents, the title and the highlights follow the page.
void help_window::page_changed()
{
    const QString topic = topic_now();
    selecting_ = true;
    contents_->setCurrentItem(nullptr);
    for (QTreeWidgetItemIterator i(contents_); *i; ++i)
        if (!topic.isEmpty() && (*i)->data(0, topic_role).toString() == topic) {
            contents_->setCurrentItem(*i);
            contents_->scrollToItem(*i);
        }
    selecting_ = false;
    for (const help_page& p : pages_)
        if (to_q(p.topic.topic) == topic)
            setWindowTitle(to_q(text(7900, p.topic.title)));
    highlight(false);
}

void help_window::highlight(bool go_to_first)
{
    QList<QTextEdit::ExtraSelection> places;
    QTextCursor first;
    const QColor ground = mixed(text_->palette().color(QPalette::Base),
                                text_->palette().color(QPalette::Active, QPalette::Highlight), 0.3);
    for (const QString& word : words_of(search_->text())) {
        QTextCursor at(text_->document());
        while (places.size() < most_hits) {
            at = text_->document()->find(word, at);
            if (at.isNull())
                break;
            QTextEdit::ExtraSelection s;
            s.cursor = at;
            s.format.setBackground(ground);
            places.append(s);
            if (first.isNull() || at.position() < first.position())
                first = at;
        }
    }
    text_->setExtraSelections(places);
    if (!go_to_first || first.isNull())
        return;
    first.setPosition(first.selectionStart());
    text_->setTextCursor(first);
    text_->ensureCursorVisible();
}

void help_window::zoom(int steps)
{
    zoom_ = std::clamp(steps, least_zoom, most_zoom);
    smaller_->setEnabled(zoom_ > least_zoom);
    larger_->setEnabled(zoom_ < most_zoom);
    QFont f = QApplication::font();
    if (f.pointSizeF() > 0)
        f.setPointSizeF(std::max(5.0, f.pointSizeF() + zoom_));
    else
        f.setPixelSize(std::max(7, f.pixelSize() + zoom_));
    text_->setFont(f);
}

/// Colours and sizes of the pages; a page takes its colours when it is laid out, so it is read
/// again.
void help_window::dress()
{
    const QPalette p = QApplication::palette();
    const QString fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    text_->document()->setDocumentMargin(page_margin);
    text_->document()->setDefaultStyleSheet(
        QStringLiteral("h1 { font-size: x-large; margin-bottom: 10px; }"
                       "h2 { font-size: large; margin-top: 18px; margin-bottom: 4px; }"
                       "p, li, dd { margin-top: 4px; margin-bottom: 6px; }"
                       "dt { margin-top: 8px; }"
                       "code, pre { font-family: '%1'; }"
                       "pre { background-color: %2; }"
                       "a[href] { color: %3; text-decoration: none; }")
            .arg(fixed, mixed(p.color(QPalette::Base), p.color(QPalette::Text), 0.06).name(),
                 p.color(QPalette::Link).name()));
    zoom(zoom_);
    if (text_->source().isEmpty())
        return;
    const int place = text_->verticalScrollBar()->value();
    text_->reload();
    text_->verticalScrollBar()->setValue(place);
    highlight(false);
}

void help_window::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (text_ && (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange))
        dress();
}

/// A modal window lets only its own children be used: the help becomes one of them until it
/// closes.
void help_window::stand_beside(QWidget* modal)
{
    if (parentWidget() == modal)
        return;
    if (parentWidget())
        parentWidget()->removeEventFilter(this);
    const QRect place = geometry();
    const bool was_visible = isVisible();
    setParent(modal, Qt::Window);
    if (modal)
        modal->installEventFilter(this);
    if (was_visible) {
        setGeometry(place);
        show();
    }
}

bool help_window::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Hide && object == parentWidget() &&
        !static_cast<QWidget*>(object)->isVisible())
        stand_beside(nullptr);
    return QWidget::eventFilter(object, event);
}

struct window_topic {
    const char* window;
    const char* topic;
};
// clang-format off
constexpr std::array window_topics = {
    window_topic{"Form1",       "main_window"},
    window_topic{"WAYPOINT",    "editing"},
    window_topic{"einfüg_q",    "conflicts"},
    window_topic{"such",        "searching"},
    window_topic{"Garmin_prop", "receiver_properties"},
    window_topic{"info",        "problems"},
    window_topic{"op",          "main_window"},
    window_topic{"op2",         "conflicts"},
    window_topic{"sellang",     "first_steps"},
    window_topic{"selfil",      "import"},
    window_topic{"selrou",      "receiver"},
    window_topic{"selwp",       "receiver"},
};
// clang-format on

std::string topic_of(const QWidget* w)
{
    if (qobject_cast<const QMessageBox*>(w))
        return "problems";
    if (qobject_cast<const QFileDialog*>(w))
        return "files";
    return w ? help_topic_of(w->objectName()) : std::string();
}

class key_listener : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
            return false;
        const QWidget* w = QApplication::activeWindow();
        if (!w || w == help.window)
            return false;
        user_action([topic = topic_of(w)] { help_show(topic); });
        return true;
    }
};

} // namespace

void help_show(const std::string& topic)
{
    if (help_folder().empty()) {
        say(7908, buttons::ok, icon::exclamation, shown_path(folders.program));
        return;
    }
    if (!help.window)
        help.window = new help_window;
    help_window& w = *help.window;
    if (w.language() != text_table.language)
        w.load_language();
    w.open(to_q(topic));
    w.stand_beside(QApplication::activeModalWidget());
    if (w.isMinimized())
        w.showNormal();
    w.show();
    w.raise();
    w.activateWindow();
}

void help_follow_language()
{
    if (help.window && help.window->language() != text_table.language &&
        text_table.loaded == text_table.language)
        help.window->load_language();
}

void help_listen_for_key()
{
    if (help.key_listener)
        return;
    help.key_listener = new key_listener(QCoreApplication::instance());
    QCoreApplication::instance()->installEventFilter(help.key_listener);
}

void help_close()
{
    delete help.window;
    delete help.key_listener;
}

std::string help_topic_of(const QString& window_name)
{
    const auto* const hit = std::ranges::find_if(window_topics, [&](const window_topic& t) {
        return window_name == QString::fromUtf8(t.window);
    });
    return hit == window_topics.end() ? std::string() : hit->topic;
}

QWidget* help_widget()
{
    return help.window;
}

} // namespace velkoro

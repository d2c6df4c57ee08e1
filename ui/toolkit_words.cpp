#include "ui/toolkit_words.h"

#include "core/texts.h"
#include "ui/qt_text.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

#include <algorithm>
#include <cstring>

namespace velkoro {
namespace {

struct toolkit_word {
    const char* context;
    const char* source; ///< the toolkit's English
    int text;
};

// clang-format off
constexpr toolkit_word words[] = {
    {"QShortcut", "Ctrl", 7657},
    {"QShortcut", "Shift", 7658},
    {"QShortcut", "Del", 7659},
    {"QLineEdit", "&Undo", 7660},
    {"QLineEdit", "&Redo", 7661},
    {"QLineEdit", "Cu&t", 7662},
    {"QLineEdit", "&Copy", 7663},
    {"QLineEdit", "&Paste", 7664},
    {"QLineEdit", "Delete", 7665},
    {"QLineEdit", "Select All", 7666},
    {"QFileDialog", "Look in:", 7667},
    {"QFileDialog", "File &name:", 7668},
    {"QFileDialog", "Files of type:", 7669},
    {"QFileDialog", "Directory:", 7670},
    {"QFileDialog", "&Open", 7671},
    {"QFileDialog", "&Save", 7672},
    {"QFileDialog", "&Choose", 7673},
    {"QPlatformTheme", "Cancel", 7674},
    {"QFileDialog", "Back", 7675},
    {"QFileDialog", "Forward", 7676},
    {"QFileDialog", "Parent Directory", 7677},
    {"QFileDialog", "Create New Folder", 7678},
    {"QFileDialog", "List View", 7679},
    {"QFileDialog", "Detail View", 7680},
    {"QFileSystemModel", "Name", 7681},
    {"QFileSystemModel", "Size", 7682},
    {"QFileSystemModel", "Type", 7683},
    {"QFileSystemModel", "Date Modified", 7684},
    {"QFileDialog", "Computer", 7685},
    {"QFileDialog", "%1 already exists.\nDo you want to replace it?", 7686},
    {"QPlatformTheme", "&Yes", 7687},
    {"QPlatformTheme", "&No", 7688},
};
// clang-format on

class text_table_translator : public QTranslator {
public:
    using QTranslator::QTranslator;
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        const auto hit = std::ranges::find_if(words, [&](const toolkit_word& w) {
            return std::strcmp(w.context, context) == 0 && std::strcmp(w.source, source) == 0;
        });
        // Until the table is loaded the toolkit speaks for itself.
        if (hit == std::end(words) || text_table.loaded < 0)
            return {};
        return to_q(text(hit->text));
    }
};

QPointer<text_table_translator> installed;

} // namespace

void translate_toolkit()
{
    if (installed)
        return;
    installed = new text_table_translator(QCoreApplication::instance());
    QCoreApplication::installTranslator(installed);
}

} // namespace velkoro

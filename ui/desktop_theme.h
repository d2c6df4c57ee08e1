/// The desktop's wish for light or dark, asked from the settings portal
/// (`org.freedesktop.appearance`, `color-scheme`) over D-Bus and followed while the program runs.
/// Qt 6.4 does not pass it on by itself.
#pragma once

#include <QDBusVariant>
#include <QObject>

#include <functional>

namespace velkoro {

/// True when the desktop prefers dark. Without a bus or a portal: false, at once.
bool desktop_wants_dark();
/// Calls `changed` whenever the wish changes, as long as `owner` lives.
void follow_desktop_theme(QObject& owner, std::function<void(bool dark)> changed);

/// Receives the portal's signal; D-Bus needs an object with a slot.
class portal_listener : public QObject {
    Q_OBJECT
public:
    portal_listener(QObject& owner, std::function<void(bool)> changed);
public Q_SLOTS:
    void setting_changed(const QString& group, const QString& key, const QDBusVariant& value);

private:
    std::function<void(bool)> changed_;
};

} // namespace velkoro

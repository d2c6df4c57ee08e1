#include "ui/desktop_theme.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace velkoro {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString group_name = QStringLiteral("org.freedesktop.appearance");
const QString key_name = QStringLiteral("color-scheme");
constexpr int answer_ms = 250; // the start must not wait for a portal that hangs
constexpr uint prefer_dark = 1;

/// The number within, however often the portal wrapped it.
uint unwrapped(QVariant v)
{
    while (v.canConvert<QDBusVariant>() && v.metaType() == QMetaType::fromType<QDBusVariant>())
        v = v.value<QDBusVariant>().variant();
    return v.toUInt();
}

} // namespace

bool desktop_wants_dark()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage ask =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    ask << group_name << key_name;
    const QDBusMessage answer = bus.call(ask, QDBus::Block, answer_ms);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return false;
    return unwrapped(answer.arguments().constFirst()) == prefer_dark;
}

portal_listener::portal_listener(QObject& owner, std::function<void(bool)> changed)
    : QObject(&owner), changed_(std::move(changed))
{
}

void portal_listener::setting_changed(const QString& group, const QString& key,
                                      const QDBusVariant& value)
{
    if (group == group_name && key == key_name)
        changed_(unwrapped(value.variant()) == prefer_dark);
}

void follow_desktop_theme(QObject& owner, std::function<void(bool dark)> changed)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto* listener = new portal_listener(owner, std::move(changed));
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), listener,
                SLOT(setting_changed(QString, QString, QDBusVariant)));
}

} // namespace velkoro

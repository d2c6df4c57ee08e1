#include "ui/instance_link.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>

#include <sys/socket.h>
#include <unistd.h>

#include <memory>

namespace velkoro {
namespace {

constexpr int connect_ms = 500;
constexpr int answer_ms = 3000;        // the running one may be busy with a job
constexpr qint64 longest_line = 65536; // a command line, not a file
constexpr char taken = '\x06';         // the listener's receipt

struct link_state {
    std::unique_ptr<QLocalServer> server{};
};
link_state link_end;

QString path_of(const std::string& name)
{
    return QFile::decodeName(QByteArray::fromStdString(name));
}

bool same_user(const QLocalSocket& socket)
{
    ucred other{};
    socklen_t size = sizeof other;
    return getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &other,
                      &size) == 0 &&
           other.uid == getuid();
}

void take_text(QLocalSocket& socket, const std::function<void(const std::string&)>& arrived)
{
    if (socket.bytesAvailable() > longest_line) {
        socket.abort();
        return;
    }
    if (!socket.peek(longest_line).contains('\0'))
        return; // the rest is still to come
    QByteArray text = socket.readAll();
    text.truncate(text.indexOf('\0'));
    socket.write(&taken, 1);
    socket.flush();
    socket.disconnectFromServer();
    arrived(text.toStdString());
}

} // namespace

std::string link_name(const std::string& suffix)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return QFile::encodeName(folder).toStdString() + "/velkoro-" + std::to_string(getuid()) +
           suffix;
}

bool link_alive(const std::string& name)
{
    QLocalSocket socket;
    socket.connectToServer(path_of(name));
    return socket.waitForConnected(connect_ms) && same_user(socket);
}

bool link_send(const std::string& name, const std::string& text)
{
    QLocalSocket socket;
    socket.connectToServer(path_of(name));
    if (!socket.waitForConnected(connect_ms) || !same_user(socket))
        return false;
    const QByteArray bytes = QByteArray::fromStdString(text) + '\0';
    socket.write(bytes);
    while (socket.bytesToWrite() > 0)
        if (!socket.waitForBytesWritten(answer_ms))
            return false;
    return socket.waitForReadyRead(answer_ms) && socket.read(1) == QByteArray(1, taken);
}

bool link_listen(const std::string& name, std::function<void(const std::string&)> arrived)
{
    link_close();
    if (link_alive(name))
        return false;
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(path_of(name));
    if (!server->listen(path_of(name)))
        return false;
    QObject::connect(server.get(), &QLocalServer::newConnection, server.get(),
                     [s = server.get(), arrived = std::move(arrived)] {
                         while (QLocalSocket* socket = s->nextPendingConnection()) {
                             if (!same_user(*socket)) {
                                 delete socket;
                                 continue;
                             }
                             QObject::connect(socket, &QLocalSocket::disconnected, socket,
                                              &QObject::deleteLater);
                             QObject::connect(socket, &QLocalSocket::readyRead, socket,
                                              [socket, arrived] { take_text(*socket, arrived); });
                             if (socket->bytesAvailable() > 0)
                                 take_text(*socket, arrived);
                         }
                     });
    link_end.server = std::move(server);
    return true;
}

void link_close()
{
    link_end.server.reset();
}

} // namespace velkoro

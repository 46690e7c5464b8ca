#include "preview/Front.h"

#include <unistd.h>

#include <QCryptographicHash>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

namespace kestrix::preview {
namespace {

constexpr int kPatience = 1000;  // milliseconds

const QString kOrganisation = QStringLiteral("organisation");
const QString kProject = QStringLiteral("project");
const QString kTask = QStringLiteral("task");

QString NameFor(const QString& folder) {
  const QString place = QFileInfo(folder).canonicalFilePath();
  const QByteArray digest = QCryptographicHash::hash((place.isEmpty() ? folder : place).toUtf8(),
                                                     QCryptographicHash::Sha256)
                                .toHex()
                                .left(16);
  return QStringLiteral("RiskBookRpts-%1-%2").arg(::getuid()).arg(QString::fromLatin1(digest));
}

}  // namespace

Front::Front(const QString& folder) : name_(NameFor(folder)) {}

bool Front::HandOver(const Request& request) const {
  QLocalSocket socket;
  socket.connectToServer(name_);
  if (!socket.waitForConnected(kPatience)) return false;
  const QJsonObject told{
      {kOrganisation, request.organisation}, {kProject, request.project}, {kTask, request.task}};
  socket.write(QJsonDocument(told).toJson(QJsonDocument::Compact) + '\n');
  // The answer says that it was read; one that hangs has not taken it.
  return socket.waitForBytesWritten(kPatience) && socket.waitForReadyRead(kPatience);
}

void Front::Listen(std::function<void(const Request&)> take) {
  take_ = std::move(take);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { Receive(); });
  if (server_.listen(name_)) return;
  // Left by one that was killed: nobody answered there.
  QLocalServer::removeServer(name_);
  server_.listen(name_);
}

void Front::Receive() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
      if (!socket->canReadLine()) return;
      const QJsonObject told = QJsonDocument::fromJson(socket->readLine()).object();
      socket->write("taken\n");
      socket->flush();
      take_({told[kOrganisation].toString(), told[kProject].toString(), told[kTask].toInteger()});
    });
  }
}

}  // namespace kestrix::preview

// SPDX-License-Identifier: MIT
#include "DesktopFolderChooser.h"

#include "DialogFolderChooser.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariantMap>
#include <QWidget>

#include <functional>
#include <utility>

namespace quorvane {
namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// The first version of the interface that chooses folders.
constexpr uint minVersion = 3;
/// What a portal that is there takes to answer, its start included.
constexpr int answerMilliseconds = 3000;

// Answers of a request (org.freedesktop.portal.Request::Response).
constexpr uint confirmed = 0;
constexpr uint cancelled = 1;

QDBusMessage versionOfChooser()
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        portalService, portalPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    message << chooserInterface << QStringLiteral("version");
    return message;
}

/// How a portal knows the window that the chooser belongs to; empty where only the compositor could
/// tell.
QString parentWindow()
{
    const QWidget* const host = DialogFolderChooser::hostWindow();
    return host != nullptr && QApplication::platformName() == QLatin1String("xcb")
               ? QLatin1String("x11:") + QString::number(host->winId(), 16)
               : QString();
}

} // namespace

/// One question to the portal (org.freedesktop.portal.FileChooser). Deletes itself when it is
/// answered.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    /// unserved is called when the portal cannot show a chooser; chosen as FolderChooser says.
    PortalRequest(QString prompt, QString message, std::function<void(const FilePath&)> chosen,
                  std::function<void()> unserved)
        : m_prompt(std::move(prompt))
        , m_message(std::move(message))
        , m_chosen(std::move(chosen))
        , m_unserved(std::move(unserved))
    {}

    void start()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            giveUp();
            return;
        }
        watch(bus.asyncCall(versionOfChooser(), answerMilliseconds),
              [this](const QDBusPendingCall& answer) {
                  const QDBusPendingReply<QDBusVariant> version = answer;
                  if (version.isError() || version.value().variant().toUInt() < minVersion) {
                      giveUp();
                  } else {
                      openChooser();
                  }
              });
    }

    /// Takes the chooser off the screen if it is still there.
    void close()
    {
        if (!m_handle.isEmpty()) {
            QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(
                portalService, m_handle, requestInterface, QStringLiteral("Close")));
        }
    }

private Q_SLOTS:
    void respond(uint answer, const QVariantMap& results)
    {
        if (answer != confirmed && answer != cancelled) {
            giveUp();
            return;
        }
        m_handle.clear();
        deleteLater();
        const QStringList addresses = results.value(QStringLiteral("uris")).toStringList();
        if (answer == confirmed && !addresses.isEmpty()) {
            // Last: it may ask for the next chooser, which takes this one away.
            const auto chosen = std::move(m_chosen);
            chosen(FilePath::fromFileUrl(addresses.front().toStdString()));
        }
    }

private:
    void openChooser()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        const QString token =
            QLatin1String("quorvane_") + QUuid::createUuid().toString(QUuid::Id128);
        // The answer may come before the handle does: its path is known beforehand.
        QString sender = bus.baseService().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        listen(portalPath + QLatin1String("/request/") + sender + QLatin1Char('/') + token);
        QDBusMessage message = QDBusMessage::createMethodCall(
            portalService, portalPath, chooserInterface, QStringLiteral("OpenFile"));
        message << parentWindow() << m_message
                << QVariantMap{{QStringLiteral("handle_token"), token},
                               {QStringLiteral("accept_label"), m_prompt},
                               {QStringLiteral("modal"), true},
                               {QStringLiteral("multiple"), false},
                               {QStringLiteral("directory"), true}};
        watch(bus.asyncCall(message), [this](const QDBusPendingCall& answer) {
            const QDBusPendingReply<QDBusObjectPath> handle = answer;
            if (handle.isError()) {
                giveUp();
            } else if (handle.value().path() != m_handle) {
                listen(handle.value().path());
            }
        });
    }

    void listen(const QString& handle)
    {
        m_handle = handle;
        QDBusConnection::sessionBus().connect(portalService, handle, requestInterface,
                                              QStringLiteral("Response"), this,
                                              SLOT(respond(uint, QVariantMap)));
    }

    void watch(const QDBusPendingCall& call, std::function<void(const QDBusPendingCall&)> answered)
    {
        auto* const watcher = new QDBusPendingCallWatcher(call, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [watcher, answered = std::move(answered)] {
                    watcher->deleteLater();
                    answered(*watcher);
                });
    }

    void giveUp()
    {
        m_handle.clear();
        deleteLater();
        const auto unserved = std::move(m_unserved);
        unserved();
    }

    QString m_prompt;
    QString m_message;
    std::function<void(const FilePath&)> m_chosen;
    std::function<void()> m_unserved;
    QString m_handle;
};

namespace {

class LinuxFolderChooser final : public FolderChooser
{
public:
    ~LinuxFolderChooser() override { closeOpen(); }

    void chooseFolder(const QString& prompt, const QString& message,
                      std::function<void(const FilePath&)> chosen) override
    {
        closeOpen();
        m_open = new PortalRequest(prompt, message, chosen, [this, prompt, message, chosen] {
            m_dialog.chooseFolder(prompt, message, chosen);
        });
        m_open->start();
    }

private:
    void closeOpen()
    {
        if (m_open) {
            m_open->close();
            delete m_open.data();
        }
    }

    DialogFolderChooser m_dialog;
    QPointer<PortalRequest> m_open;
};

} // namespace

std::unique_ptr<FolderChooser> makeDesktopFolderChooser()
{
    return std::make_unique<LinuxFolderChooser>();
}

} // namespace quorvane

#include "FolderChooserLinux.moc"

// SPDX-License-Identifier: MIT
#include "DesktopIntegration.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace quorvane {
namespace {

// As freedesktop.org has it for desktop entries under "D-Bus Activation".
constexpr const char* serviceName = "io.github.quorvane.Quorvane";
constexpr const char* objectPath = "/io/github/quorvane/Quorvane";
constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* searchAction = "search";
constexpr const char* tokenKey = "activation-token";
/// A process that hangs must not keep the next one from starting.
constexpr int answerTimeoutMs = 3000;

InstanceRequest requestWith(const QVariantMap& platformData)
{
    InstanceRequest request;
    request.activationToken = platformData.value(QLatin1String(tokenKey)).toString().toStdString();
    return request;
}

} // namespace

/// The methods by which other processes reach this one.
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject* parent, std::function<void(const InstanceRequest&)> handler)
        : QDBusAbstractAdaptor(parent)
        , m_handler(std::move(handler))
    {}

public Q_SLOTS:
    void Activate(const QVariantMap& platformData) { m_handler(requestWith(platformData)); }
    void Open(const QStringList& uris, const QVariantMap& platformData)
    {
        InstanceRequest request = requestWith(platformData);
        for (const QString& uri : uris) {
            const FilePath folder = FilePath::fromFileUrl(uri.toStdString());
            if (!folder.isEmpty()) {
                request.folder = folder;
                break;
            }
        }
        m_handler(request);
    }
    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData)
    {
        InstanceRequest request = requestWith(platformData);
        request.opensSearch = name == QLatin1String(searchAction);
        m_handler(request);
    }

private:
    std::function<void(const InstanceRequest&)> m_handler;
};

namespace {

class BusInstance final : public ProgramInstance
{
public:
    ~BusInstance() override
    {
        QDBusConnection::sessionBus().unregisterObject(QLatin1String(objectPath));
        if (m_isOwner) {
            QDBusConnection::sessionBus().unregisterService(QLatin1String(serviceName));
        }
    }

    bool claim(std::function<void(const InstanceRequest&)> handler) override
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        // The object first: calls may come as soon as the name is there.
        new ApplicationAdaptor(&m_object, std::move(handler));
        m_isOwner = bus.isConnected() && bus.registerObject(QLatin1String(objectPath), &m_object) &&
                    bus.registerService(QLatin1String(serviceName));
        return m_isOwner;
    }

    bool handOver(const InstanceRequest& request) override
    {
        QVariantMap platformData;
        if (!request.activationToken.empty()) {
            platformData[QLatin1String(tokenKey)] = QString::fromStdString(request.activationToken);
        }
        const auto isTaken = [&platformData](QDBusMessage call) {
            call << platformData;
            call.setAutoStartService(false);
            return QDBusConnection::sessionBus().call(call, QDBus::Block, answerTimeoutMs).type() ==
                   QDBusMessage::ReplyMessage;
        };
        if (request.folder) {
            QDBusMessage open = method("Open");
            open << QStringList(QString::fromStdString(request.folder->fileUrl()));
            if (!isTaken(open)) {
                return false;
            }
        }
        if (request.opensSearch) {
            QDBusMessage search = method("ActivateAction");
            search << QString::fromLatin1(searchAction) << QVariantList();
            return isTaken(search);
        }
        return request.folder || isTaken(method("Activate"));
    }

private:
    static QDBusMessage method(const char* name)
    {
        return QDBusMessage::createMethodCall(QLatin1String(serviceName), QLatin1String(objectPath),
                                              QLatin1String(interfaceName), QLatin1String(name));
    }

    QObject m_object;
    bool m_isOwner = false;
};

} // namespace

std::unique_ptr<ProgramInstance> makeProgramInstance()
{
    return std::make_unique<BusInstance>();
}

} // namespace quorvane

#include "InstanceLinux.moc"

#include "application.h"

namespace Vorkel::Runner {

namespace {

/// Who we are on the wire: server and runner in one.
ClientData runnerData()
{
    return { Protocol::ServerAddress, Protocol::ServerAddress, 0, QStringLiteral("vorkel") };
}

constexpr int NoTimeout = -1;

const QString CompletedText = QStringLiteral("\tHook-up completed...");

} // namespace

/// Hears that the application has read all that it was sent before `initDone`.
class Application::InitialisedListener : public ResponseListener<ArgumentList>
{
public:
    explicit InitialisedListener(Application *application)
        : m_application(application)
    {
    }

    void response(const FunctionCallResult<ArgumentList> &result) override
    {
        if (!result.isOk())
            return;
        m_application->send(QStringLiteral("initDone"), {});
        m_application->setStage(Stage::Initialised);
    }

private:
    Application *m_application;
};

Application::Application(AsyncMessageChannel *channel, const ClientData &data, QObject *parent)
    : QObject(parent)
    , m_data(data)
    , m_initialised(std::make_unique<InitialisedListener>(this))
    , m_ipc(channel, runnerData(), this, nullptr)
{
    connect(&m_ipc, &AsyncIPC::connectionClosed, this, &Application::closed);
}

Application::~Application()
{
    m_ipc.setHandler(nullptr);
}

int Application::call(const QString &name, const ArgumentList &arguments,
                      ResponseListener<ArgumentList> *listener)
{
    return m_ipc.asyncCall(m_data.id, name, arguments, listener, NoTimeout);
}

bool Application::send(const QString &name, const ArgumentList &arguments)
{
    return m_ipc.send(m_data.id, name, arguments) != -1;
}

void Application::handleSend(FUInt32, const QString &name, const ArgumentList &arguments)
{
    if (name == QLatin1String("requestDescriptorData"))
        send(QStringLiteral("objectDescriptorData"), { QByteArray() });
    else if (name == QLatin1String("appAboutToExit"))
        emit aboutToExit();
    else if (name == QLatin1String("registerClasses"))
        emit classesAnnounced(arguments.value(1).toByteArray());
}

void Application::handleBroadcast(FUInt32, const QString &name, const ArgumentList &arguments)
{
    if (name == QLatin1String("subprocessHooked")) {
        initialise();
    } else if (name == QLatin1String("log")) {
        const QString text = arguments.value(1).toString();
        emit logged(text.trimmed());
        if (text == CompletedText)
            setStage(Stage::Ready);
    }
}

/// The reply to a call comes behind all that the application sent while it was starting, so by then
/// its requests have been answered.
void Application::initialise()
{
    send(QStringLiteral("setRunnerId"), { static_cast<int>(Protocol::ServerAddress) });
    call(QStringLiteral("getPID"), {}, m_initialised.get());
}

void Application::setStage(Stage stage)
{
    m_stage = stage;
    emit stageChanged();
}

} // namespace Vorkel::Runner

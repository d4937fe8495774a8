#pragma once

#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"

#include <memory>

namespace Vorkel::Runner {

/// One connected application: leads it through its bring-up, then carries calls to it.
class Application : public QObject, public IPCResponseHandlerIface
{
    Q_OBJECT

public:
    enum class Stage {
        BringingUp, ///< it waits for us
        Initialised, ///< it runs on
        Ready ///< its event loop runs
    };

    /// Takes `channel`, on which the handshake is over.
    Application(AsyncMessageChannel *channel, const ClientData &data, QObject *parent);
    ~Application() override;

    [[nodiscard]] Stage stage() const { return m_stage; }
    [[nodiscard]] bool isOpen() const { return m_ipc.isOpen(); }
    [[nodiscard]] FUInt32 address() const { return m_data.id; }
    [[nodiscard]] const QString &name() const { return m_data.name; }

    int call(const QString &name, const ArgumentList &arguments, ResponseListener<ArgumentList> *listener);
    bool send(const QString &name, const ArgumentList &arguments);

    void handleSend(FUInt32 sender, const QString &name, const ArgumentList &arguments) override;
    void handleBroadcast(FUInt32 sender, const QString &name, const ArgumentList &arguments) override;

signals:
    void stageChanged();
    /// A line for the tester's log.
    void logged(const QString &text);
    void aboutToExit();
    /// The records of new classes.
    void classesAnnounced(const QByteArray &records);
    void closed();

private:
    class InitialisedListener;

    void initialise();
    void setStage(Stage stage);

    ClientData m_data;
    std::unique_ptr<InitialisedListener> m_initialised; // outlives what fails the calls that it awaits
    AsyncIPC m_ipc;
    Stage m_stage = Stage::BringingUp;
};

} // namespace Vorkel::Runner

// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QSocketNotifier;

namespace quorvane {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a call of
/// QCoreApplication::quit(), so that the program ends as by its menu: what must not be cut off is
/// finished first. One object in a process, for the life of the application. Main thread.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Leaves the signals as they are where no pipe can be had.
    explicit TerminationSignals(QObject* parent = nullptr);
    /// Gives the signals their usual effect back.
    ~TerminationSignals() override;

private:
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace quorvane

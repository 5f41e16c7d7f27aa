// SPDX-License-Identifier: MIT
#include "TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace quorvane {
namespace {

constexpr std::array<int, 3> endingSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write to a pipe (signal-safety(7)).
std::array<int, 2> pipeEnds{-1, -1};

void noteSignal(int)
{
    const int error = errno;
    const char byte = 0;
    // A full pipe has a byte waiting already.
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
    errno = error;
}

void setHandlers(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : endingSignals) {
        struct sigaction before = {};
        // Who starts the program with nohup(1) wants SIGHUP ignored.
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
{
    if (pipe(pipeEnds.data()) != 0) {
        return;
    }
    for (const int end : pipeEnds) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [] {
        std::array<char, 16> bytes;
        while (read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        QCoreApplication::quit();
    });
    setHandlers(noteSignal);
}

TerminationSignals::~TerminationSignals()
{
    if (m_notifier == nullptr) {
        return;
    }
    setHandlers(SIG_DFL);
    for (int& end : pipeEnds) {
        close(end);
        end = -1;
    }
}

} // namespace quorvane

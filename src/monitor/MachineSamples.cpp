// SPDX-License-Identifier: MIT
#include "MachineSamples.h"

#include "ByteFormatter.h"

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

/// Fixed notation with a point, whatever the locale.
QString fixed(double value, int digits)
{
    return QString::number(value, 'f', digits);
}

double percentOf(std::uint64_t part, std::uint64_t whole)
{
    return whole == 0 ? 0 : static_cast<double>(part) / static_cast<double>(whole) * 100;
}

double counted(std::uint64_t before, std::uint64_t now)
{
    constexpr double counterRange = 4294967296.0; // 2^32
    if (now >= before) {
        return static_cast<double>(now - before);
    }
    return counterRange - static_cast<double>(before) + static_cast<double>(now);
}

} // namespace

double CPUSample::usagePercent() const
{
    return percentOf(user + system, total);
}

double MemorySample::usedPercent() const
{
    return percentOf(usedBytes, totalBytes);
}

QString ProcessSample::formattedCPU() const
{
    return fixed(cpuPercent, 1) % QLatin1Char('%');
}

QString ProcessSample::formattedMemory() const
{
    return ByteFormatter::string(rssBytes, 1);
}

QString NetRateSample::rateText(double bytes)
{
    constexpr double kilo = 1024;
    constexpr double mega = kilo * 1024;
    constexpr double giga = mega * 1024;
    if (bytes >= giga) {
        return fixed(bytes / giga, 1) % QLatin1String(" G");
    }
    if (bytes >= mega) {
        return fixed(bytes / mega, 1) % QLatin1String(" M");
    }
    if (bytes >= kilo) {
        return fixed(bytes / kilo, 0) % QLatin1String(" K");
    }
    return fixed(bytes, 0) % QLatin1String(" B");
}

QString NetRateSample::formattedRX() const
{
    return rateText(rxBytesPerSec) % QLatin1String("/s");
}

QString NetRateSample::formattedTX() const
{
    return rateText(txBytesPerSec) % QLatin1String("/s");
}

QString BatterySample::statusText() const
{
    if (!isPresent) {
        return QStringLiteral("No battery detected");
    }
    if (onAC) {
        return QStringLiteral("AC powered · Power adapter");
    }
    return isCharging ? QStringLiteral("Charging on battery") : QStringLiteral("On battery");
}

QString BatterySample::healthText() const
{
    return healthPercent > 0 ? fixed(std::round(healthPercent), 0) % QLatin1Char('%')
                             : QStringLiteral("—");
}

QString BatterySample::timeRemainingText() const
{
    const int minutes = isCharging ? timeToFullChargeMinutes : timeToEmptyMinutes;
    if (minutes < 1) {
        return isCharging ? QStringLiteral("Fully Charged") : QStringLiteral("Calculating…");
    }
    const QString time =
        minutes >= 60
            ? QStringLiteral("%1:%2").arg(minutes / 60).arg(minutes % 60, 2, 10, QLatin1Char('0'))
            : QString::number(minutes) % QLatin1String(":00");
    return time % (isCharging ? QLatin1String(" until full") : QLatin1String(" remaining"));
}

NetRateSample NetworkMeter::rates(const std::optional<NetworkBytes>& bytes, Clock::time_point now)
{
    if (!bytes || (bytes->received == 0 && bytes->sent == 0)) {
        return {};
    }
    const std::lock_guard guard(m_netLock);
    const std::optional<Reading> last = m_last;
    m_last = Reading{*bytes, now};
    if (!last || last->time >= now) {
        return {};
    }
    const std::chrono::duration<double> elapsed =
        std::max<std::chrono::duration<double>>(now - last->time, minElapsed);
    return {counted(last->bytes.received, bytes->received) / elapsed.count(),
            counted(last->bytes.sent, bytes->sent) / elapsed.count()};
}

} // namespace quorvane

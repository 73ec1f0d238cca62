#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QGenericPlugin>
#include <QTimer>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <limits>
#include <thread>

#include <dlfcn.h>
#include <execinfo.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto c_grid = std::chrono::milliseconds(2);
/// The first look at what the thread does, and the time between looks.
constexpr qint64 c_nFirstSample = 20'000'000;
constexpr qint64 c_nSampleInterval = 8'000'000;
constexpr qint64 c_nStall = 50'000'000;
constexpr int c_nFrames = 48;
constexpr int c_nSamples = 64;
/// The handler's own frame and the kernel's way into it.
constexpr int c_nHandlerFrames = 2;

qint64 Now() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1'000'000'000LL + t.tv_nsec;
}

struct Sample {
    std::array<void*, c_nFrames> Frames;
    int nFrames = 0;
};

// Written by the signal's handler on the interface thread, read by that thread afterwards.
std::array<Sample, c_nSamples> s_samples;
volatile std::sig_atomic_t s_nSamples = 0;

void TakeSample(int) {
    const int nSample = s_nSamples;
    if (nSample >= c_nSamples)
        return;
    s_samples[nSample].nFrames = backtrace(s_samples[nSample].Frames.data(), c_nFrames);
    s_nSamples = nSample + 1;
}

/// How long a thread ran, and how long it was ready and the processor was given to others, in nanoseconds.
struct Share {
    qint64 nRan = 0;
    qint64 nDelayed = 0;
};

} // namespace

/// Finds the times in which the interface thread could not have painted. A thread beside it posts an event
/// every two milliseconds, one at a time: what the event waits is what a paint would have waited, in a nested
/// loop too, whichever dispatcher runs. Time in which the processor was given to others is told apart. While
/// an event waits, the interface thread's stack is looked at.
class CStallMeter : public QObject {
    Q_OBJECT
public:
    CStallMeter() : m_file(qEnvironmentVariable("VOREL_STALLS_FILE")) {
        if (!m_file.open(QIODevice::Append))
            qFatal("VOREL_STALLS_FILE is not writable");
        m_schedstat = "/proc/self/task/" + QByteArray::number(gettid()) + "/schedstat";
        m_interfaceThread = pthread_self();
        // The first call loads a library, which a handler must not.
        void* first[1];
        backtrace(first, 1);
        struct sigaction action {};
        action.sa_handler = &TakeSample;
        action.sa_flags = SA_RESTART;
        sigaction(c_nSignal, &action, nullptr);
        connect(qApp, &QCoreApplication::aboutToQuit, this, &CStallMeter::Stop);
        QTimer::singleShot(0, this, [this] {
            m_nStart = Now();
            m_thread = std::thread([this] { Watch(); });
        });
    }
    ~CStallMeter() override { Stop(); }

protected:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::User)
            return QObject::event(pEvent);
        const qint64 nPosted = m_nPosted;
        const qint64 nWaited = Now() - nPosted;
        m_nPosted = std::numeric_limits<qint64>::max();
        if (nWaited > c_nStall)
            Write(nPosted, nWaited);
        s_nSamples = 0;
        m_bPending = false;
        return true;
    }

private:
    void Watch() {
        qint64 nLastSample = 0;
        while (!m_bStop) {
            const qint64 nNow = Now();
            if (!m_bPending) {
                m_atPost = Read();
                m_nPosted = nNow;
                m_bPending = true;
                QCoreApplication::postEvent(this, new QEvent(QEvent::User));
            } else if (nNow - m_nPosted > c_nFirstSample && nNow - nLastSample > c_nSampleInterval) {
                nLastSample = nNow;
                pthread_kill(m_interfaceThread, c_nSignal);
            }
            std::this_thread::sleep_for(c_grid);
        }
    }

    void Stop() {
        m_bStop = true;
        if (m_thread.joinable())
            m_thread.join();
    }

    Share Read() const {
        QFile file(QString::fromLatin1(m_schedstat));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            return {};
        const QList<QByteArray> fields = file.readLine(100).split(' ');
        return {fields.value(0).toLongLong(), fields.value(1).toLongLong()};
    }

    /// A line for a stall: start and length, of which time ran and time given to others, all in milliseconds;
    /// then its samples, "|" between them and ";" between frames, innermost first, each "file+offset".
    void Write(qint64 nPosted, qint64 nWaited) {
        const Share now = Read();
        QByteArray line;
        for (const qint64 nTime :
             {nPosted - m_nStart, nWaited, now.nRan - m_atPost.nRan, now.nDelayed - m_atPost.nDelayed})
            line += QByteArray::number(double(nTime) / 1e6, 'f', 1) + '\t';
        for (int n = 0; n < s_nSamples; ++n) {
            if (n > 0)
                line += '|';
            for (int nFrame = c_nHandlerFrames; nFrame < s_samples[n].nFrames; ++nFrame)
                line += FrameText(s_samples[n].Frames[nFrame]) + ';';
        }
        m_file.write(line + '\n');
        m_file.flush();
    }

    static QByteArray FrameText(void* pAddress) {
        Dl_info info{};
        if (dladdr(pAddress, &info) == 0)
            return "?";
        // The address behind a call may belong to the next function already.
        const auto nOffset = static_cast<char*>(pAddress) - static_cast<char*>(info.dli_fbase) - 1;
        return QByteArray(info.dli_fname) + '+' + QByteArray::number(qlonglong(nOffset), 16);
    }

    static inline const int c_nSignal = SIGRTMIN + 7;
    QFile m_file;
    QByteArray m_schedstat;
    pthread_t m_interfaceThread;
    std::thread m_thread;
    qint64 m_nStart = 0;
    Share m_atPost;
    std::atomic<qint64> m_nPosted = 0;
    std::atomic<bool> m_bPending = false;
    std::atomic<bool> m_bStop = false;
};

class CStallsPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "vorelstalls.json")
public:
    QObject* create(const QString& /*strKey*/, const QString& /*strSpecification*/) override {
        return new CStallMeter;
    }
};

#include "StallMeter.moc"

#include "platform/base/CaptureDevices.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Without a name for what gives no pictures.
QString CameraName(const QString& strDevice) {
    const int nFile = ::open(QFile::encodeName(strDevice).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (nFile < 0)
        return {};
    v4l2_capability what{};
    const bool bTold = ::ioctl(nFile, VIDIOC_QUERYCAP, &what) == 0;
    ::close(nFile);
    const quint32 nCan =
        (what.capabilities & V4L2_CAP_DEVICE_CAPS) != 0 ? what.device_caps : what.capabilities;
    if (!bTold || (nCan & V4L2_CAP_VIDEO_CAPTURE) == 0)
        return {};
    const auto* szCard = reinterpret_cast<const char*>(what.card);
    return QString::fromUtf8(szCard, qsizetype(qstrnlen(szCard, sizeof what.card))).simplified();
}

} // namespace

QList<Platform::SCamera> Platform::Cameras() {
    QList<SCamera> cameras;
    for (const QString& strName : QDir(u"/dev"_s).entryList({u"video*"_s}, QDir::System)) {
        const QString strDevice = u"/dev/"_s + strName;
        if (const QString strCamera = CameraName(strDevice); !strCamera.isEmpty())
            cameras.append({strDevice, strCamera});
    }
    return cameras;
}

bool Platform::HasSoundServer() {
    const QString strRuntime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return qEnvironmentVariableIsSet("PULSE_SERVER") ||
           (!strRuntime.isEmpty() && QFile::exists(strRuntime + u"/pulse/native"_s));
}

bool Platform::HasMicrophone() {
    return HasSoundServer() || HasCapturingCard();
}

bool Platform::HasCapturingCard() {
    QFile cards(u"/proc/asound/pcm"_s);
    return cards.open(QIODevice::ReadOnly) && cards.readAll().contains("capture");
}

bool Platform::CanRecordScreen() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
           qEnvironmentVariable("XDG_SESSION_TYPE") != u"wayland"_s;
}

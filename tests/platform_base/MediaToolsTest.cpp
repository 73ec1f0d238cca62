#include "platform/base/MediaTools.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// A back end that only the environment names counts when it is there; one that is named and missing must not
// hide the toolkit's own.
TEST(MediaTools, FindsThePlayerThatWouldBeTaken) {
    const CTempFolder plugins;
    const QStringList folders{u"/nowhere"_s, plugins.Native()};
    const QByteArray before = qgetenv("QT_MEDIA_BACKEND");
    qputenv("QT_MEDIA_BACKEND", "gstreamer");
    EXPECT_FALSE(Platform::HasMediaPlayer(folders));
    plugins.Write(u"multimedia\\libgstreamermediaplugin.so"_s, "");
    EXPECT_TRUE(Platform::HasMediaPlayer(folders));
    qunsetenv("QT_MEDIA_BACKEND");
    EXPECT_FALSE(Platform::HasMediaPlayer(folders));
    plugins.Write(u"multimedia\\libffmpegmediaplugin.so"_s, "");
    qputenv("QT_MEDIA_BACKEND", "../x");
    EXPECT_TRUE(Platform::HasMediaPlayer(folders));
    qputenv("QT_MEDIA_BACKEND", before);
}

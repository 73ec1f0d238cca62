#include "platform/base/MediaTools.h"

#include "tests/support/Environment.h"
#include "tests/support/Testing.h"

// A back end that only the environment names counts when it is there; one that is named and missing must not
// hide the toolkit's own.
TEST(MediaTools, FindsThePlayerThatWouldBeTaken) {
    const CTempFolder plugins;
    const QStringList folders{u"/nowhere"_s, plugins.Native()};
    CEnvironment environment{{"QT_MEDIA_BACKEND", u"gstreamer"_s}};
    EXPECT_FALSE(Platform::HasMediaPlayer(folders));
    plugins.Write(u"multimedia\\libgstreamermediaplugin.so"_s, "");
    EXPECT_TRUE(Platform::HasMediaPlayer(folders));
    environment.Set("QT_MEDIA_BACKEND", {});
    EXPECT_FALSE(Platform::HasMediaPlayer(folders));
    plugins.Write(u"multimedia\\libffmpegmediaplugin.so"_s, "");
    environment.Set("QT_MEDIA_BACKEND", u"../x"_s);
    EXPECT_TRUE(Platform::HasMediaPlayer(folders));
}

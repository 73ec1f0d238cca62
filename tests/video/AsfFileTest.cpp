#include "video/AsfFile.h"
#include "foundation/Exceptions.h"
#include "tests/support/Testing.h"

#include <QtEndian>

namespace {

/// A header that was put together apart from this program, field by field, and four bytes of data.
QByteArray Film() {
    return ReadTestFile(VOREL_SEEDS "lecture.asf");
}

TEST(AsfFile, AHeaderFromElsewhereReads) {
    const CTempFolder folder;
    folder.Write(u"a.asf"_s, Film());
    const SAsfScript script = ReadAsfScript(folder.Path(u"a.asf"_s));
    EXPECT_EQ(script.Commands,
              (QList<SAsfCommand>{
                  {0, u"TORVANE"_s, u"-1"_s}, {4000, u"TORVANE"_s, u"-2"_s}, {4500, u"点"_s, u"0"_s}}));
    EXPECT_EQ(script.Markers, (QList<SAsfMarker>{{0, u"第一页"_s}, {4000, u"Two"_s}}));
}

TEST(AsfFile, ACopyHasTheNewScriptAndTheOldData) {
    const CTempFolder folder;
    folder.Write(u"a.asf"_s, Film());
    SAsfScript script;
    for (int i = 0; i < 300; ++i) {
        script.Commands.append({i * 1000, u"T"_s, QString::number(-i - 1)});
        script.Markers.append({i * 1000, u"第 %1 页"_s.arg(i)});
    }
    WriteAsfScript(folder.Path(u"a.asf"_s), folder.Path(u"b.asf"_s), script);
    const SAsfScript read = ReadAsfScript(folder.Path(u"b.asf"_s));
    EXPECT_EQ(read.Commands, script.Commands);
    EXPECT_EQ(read.Markers, script.Markers);
    const QByteArray made = folder.Read(u"b.asf"_s);
    EXPECT_TRUE(made.endsWith("data"));
    EXPECT_EQ(qFromLittleEndian<quint64>(made.constData() + 16), quint64(made.size() - 4));
    EXPECT_EQ(qFromLittleEndian<quint32>(made.constData() + 24), 3U) << "the old ones are gone";
    EXPECT_EQ(qFromLittleEndian<quint64>(made.constData() + 30 + 40), quint64(made.size()));
    // Nothing is written over, and what is given up leaves nothing.
    EXPECT_THROW(WriteAsfScript(folder.Path(u"a.asf"_s), folder.Path(u"b.asf"_s), {}),
                 Torvane::CRunException);
    EXPECT_EQ(folder.Read(u"b.asf"_s), made);
    EXPECT_THROW(WriteAsfScript(folder.Path(u"a.asf"_s), folder.Path(u"c.asf"_s), script,
                                [](qint64, qint64) { return false; }),
                 Torvane::CRunException);
    EXPECT_FALSE(folder.Exists(u"c.asf"_s));
}

TEST(AsfFile, DamagedFilesHaveNoScriptPastTheDamage) {
    const CTempFolder folder(CTempFolder::InMemory());
    const QByteArray whole = Film();
    const auto read = [&](const QByteArray& bytes) {
        folder.Write(u"a.asf"_s, bytes);
        return ReadAsfScript(folder.Path(u"a.asf"_s));
    };
    for (qsizetype n = 0; n < whole.size(); ++n) {
        const SAsfScript cut = read(whole.first(n));
        EXPECT_LE(cut.Commands.size(), 3);
        QByteArray damaged = whole;
        damaged[n] = '\xFF';
        const SAsfScript other = read(damaged);
        EXPECT_LE(other.Commands.size() + other.Markers.size(), 5);
    }
    EXPECT_TRUE(ReadAsfScript(folder.Path()).Markers.isEmpty());
    folder.Write(u"text.asf"_s, "no film");
    EXPECT_THROW(WriteAsfScript(folder.Path(u"text.asf"_s), folder.Path(u"d.asf"_s), {}),
                 Torvane::CRunException);
    EXPECT_FALSE(folder.Exists(u"d.asf"_s));
}

} // namespace

#include "video/Recording.h"

#include "course/ProjectFile.h"
#include "foundation/CodePage.h"
#include "foundation/FolderWalk.h"
#include "foundation/IniFile.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "platform/base/Process.h"
#include "video/Texts.h"
#include "video/VideoKey.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString c_strFilmExtension = u".asf"_s;
const QString c_strWorkingFilm = u"\\recorded%1.part"_s;
const QString c_strKeptFilm = u"\\kept%1.film"_s;

QString PartPath(const QString& strFolder, const QString& strName, qsizetype nPart) {
    return strFolder + strName.arg(nPart == 0 ? QString() : QString::number(nPart + 1));
}

} // namespace

QString RecorderProjectPath(const QString& strFolder) {
    return strFolder + u"\\Template.prj"_s;
}

QString FilmPath(const QString& strFolder) {
    const QString strName =
        CodePage::Cut(ReadProfileString(u"OutputStream"_s, u"FileName"_s, {}, RecorderProjectPath(strFolder)),
                      Torvane::File::c_nMaxPathBytes - 1);
    return strName.isEmpty() ? QString() : strFolder + u'\\' + strName + c_strFilmExtension;
}

bool HasFilm(const QString& strFolder) {
    QList<Torvane::File::FolderEntry> entries;
    Torvane::File::ListFolder(strFolder, entries);
    return std::ranges::any_of(entries, [](const Torvane::File::FolderEntry& entry) {
        return !entry.bFolder && LowerAscii(Torvane::File::Extension(entry.strName)) == c_strFilmExtension;
    });
}

QString WorkingFilmPath(const QString& strFolder, qsizetype nPart) {
    return PartPath(strFolder, c_strWorkingFilm, nPart);
}

QString KeptFilmPath(const QString& strFolder, qsizetype nPart) {
    return PartPath(strFolder, c_strKeptFilm, nPart);
}

QString WorkingTimesPath(const QString& strFolder) {
    return strFolder + u"\\recorded.times"_s;
}

QString KeptTimesPath(const QString& strFolder) {
    return strFolder + u"\\kept.times"_s;
}

bool IsUnfinishedFilm(const QString& strName) {
    static const QRegularExpression unfinished(
        u"^(lecture\\.part|(recorded|kept)\\.times|(recorded\\d*\\.part|kept\\d*\\.film)(\\.joined|\\.joining(\\.list)?)?)$"_s);
    return unfinished.match(strName).hasMatch();
}

bool HoldsRecording(const QString& strFolder) {
    using Torvane::File::EPathKind;
    using Torvane::File::GetPathKind;
    return GetPathKind(RecorderProjectPath(strFolder)) == EPathKind::File &&
           (HasFilm(strFolder) || GetPathKind(WorkingFilmPath(strFolder)) == EPathKind::File ||
            GetPathKind(KeptFilmPath(strFolder)) == EPathKind::File);
}

QString RecorderCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                            const QByteArray& modulus, quint32 nSeed) {
    return strProgramFolder + u"\\VRM\\VorelRecorder.exe "_s + strProjectPath + u'\t' +
           QString::fromLatin1(modulus) + u'\t' + QString::number(nSeed);
}

bool RecordVideo(const QString& strFolder, bool bWriteProject, const CCourseInfo& info,
                 Torvane::Dialog::MFC::IPeople& people) {
    const auto fail = [&people](const QString& strText) {
        people.Error(strText);
        return false;
    };
    if (bWriteProject && !WriteRecorderProject(strFolder, info))
        return fail(VideoText::c_strProjectNotWritten);
    const CSysInfo& settings = CSysInfo::Instance();
    const auto key = CVideoKey(settings.GetSchoolName()).GetRecorderKey();
    if (!key)
        return fail(VideoText::c_strNoKey);
    const QString strCommandLine = RecorderCommandLine(
        settings.GetProgramFolder(false), RecorderProjectPath(strFolder), key->Modulus, key->nSeed);
    auto pStatus = people.OpenStatus();
    pStatus->ShowStatus(VideoText::c_strRecorderRuns);
    auto pStop = people.StopInput();
    const bool bStarted = Platform::RunAndWait(strCommandLine, [&people] { people.KeepPainting(); });
    pStop.reset();
    pStatus.reset();
    if (!bStarted)
        return fail(VideoText::c_strNoRecorder);
    return HasFilm(strFolder);
}

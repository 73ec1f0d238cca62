#include "office/OfficeFiles.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"
#include "office/Conversion.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <QFile>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

/// What one file of Office may have at most: its copy and its pages are on the disk at the same time.
constexpr quint64 c_nMaxSource = quint64{2} * 1024 * 1024 * 1024;

QString FilesFolder(const QString& strStem) {
    return strStem + u".files"_s;
}

EConversion FailureOf(int nError) {
    return nError == ENOSPC || nError == EDQUOT ? EConversion::NoSpace : EConversion::Failed;
}

/// Stops a copy when the conversion may not go on.
class CStop : public File::IWalkFilter {
public:
    explicit CStop(const CConverter& converter) : m_converter(converter) {}
    bool Cancelled() override { return m_converter.State() != EConversion::Done; }
    bool AcceptFile(const QString&) override { return true; }
    bool AcceptFolder(const QString&) override { return true; }

private:
    const CConverter& m_converter;
};

/// The copy is the only one that the converter sees: its name is plain, and lock files stay with it.
EConversion CopySource(const QString& strSource, CConverter& converter, const QString& strCopy) {
    const auto stop = [&converter] { return converter.State() != EConversion::Done; };
    const int nError =
        Platform::CopyFileBytes(Platform::CFolder::OfPaths(), Platform::NativeBytes(strSource),
                                Platform::CFolder::OfPaths(), QFile::encodeName(strCopy), true, stop);
    const EConversion eState = converter.State();
    return eState == EConversion::Done && nError != 0 ? FailureOf(nError) : eState;
}

void RemovePages(const QString& strTarget, const QString& strFiles) {
    try {
        if (File::IsFile(strTarget))
            File::DeleteOneFile(strTarget, true);
        if (File::IsFolder(strFiles))
            File::DeleteFolder(strFiles, true);
    } catch (const CException&) {
        // What can't be removed could not be written either.
    }
}

/// The folder first: a page that stands is whole.
EConversion Install(const CConverter& converter, const QString& strTarget, const QString& strFiles) {
    CStop stop(converter);
    EConversion eEnd = EConversion::Failed;
    try {
        const QString strMade = Platform::FromNative(converter.Path(u"files"_s));
        if (File::IsFolder(strFiles))
            File::DeleteFolder(strFiles, true);
        if (File::IsFolder(strMade))
            File::ForceCopyFolder(strMade, strFiles, true, &stop);
        // The copy of a folder that was stopped says nothing of it.
        eEnd = converter.State();
        if (eEnd == EConversion::Done)
            File::CopyOneFile(Platform::FromNative(converter.Path(u"page.htm"_s)), strTarget, true, &stop);
    } catch (const File::CFileException& e) {
        eEnd = e.GetSystemError() == ECANCELED ? converter.State() : FailureOf(e.GetSystemError());
    } catch (const CException&) {
        eEnd = EConversion::Failed;
    }
    if (eEnd != EConversion::Done)
        RemovePages(strTarget, strFiles);
    return eEnd;
}

/// A stem that would end the text or the tag that it is put into can't be told of in the frame page.
bool IsPlainStem(const QString& strStem) {
    for (const QChar c : strStem) {
        if (c == u'"' || c == u'\\' || c == u'<' || c == u'>' || c < u' ')
            return false;
    }
    return !strStem.isEmpty();
}

QByteArray LinesOf(const QByteArray& bytes) {
    QByteArray text;
    qsizetype nAt = 0;
    while (nAt < bytes.size()) {
        const qsizetype nEnd = bytes.indexOf('\n', nAt);
        QByteArray line = bytes.mid(nAt, nEnd < 0 ? -1 : nEnd - nAt);
        if (line.endsWith('\r'))
            line.chop(1);
        text += line + "\r\n";
        nAt = nEnd < 0 ? bytes.size() : nEnd + 1;
    }
    return text;
}

/// A name for the page that leaves free also the one of its folder.
QString FreePageName(const QString& strFolder) {
    for (int nTry = 0; nTry < 100; ++nTry) {
        const QString strSample = nTry == 0 ? u"a.htm"_s : u"a%1.htm"_s.arg(nTry);
        const QString strName = File::MakeUniqueName(strSample, strFolder);
        const QString strFiles = File::AddBackslash(strFolder) + FilesFolder(File::FileTitle(strName));
        if (!strName.isEmpty() && File::GetPathKind(strFiles) == File::EPathKind::Nothing)
            return strName;
    }
    return QString();
}

} // namespace

bool IsOfficeFile(const QString& strName) {
    return KindOf(strName) != EKind::None;
}

bool IsConverterInstalled() {
    return !OfficeProgram().isEmpty();
}

bool IsConverterInstalled(const QString& strName) {
    const EKind eKind = KindOf(strName);
    return IsConverterInstalled() && HasModuleFor(eKind) &&
           (eKind != EKind::Presentation || !PdfProgram().isEmpty());
}

EConversion SaveOfficeFileAsHtm(const QString& strSource, const QString& strTarget, const MayGoOn& mayGoOn,
                                const QString& strTitle) {
    const EKind eKind = KindOf(strSource);
    Platform::CFileState state;
    if (Platform::GetFileState(Platform::NativeBytes(strSource), state) != 0 || !state.bPlainFile ||
        state.nSize == 0 || state.nSize > c_nMaxSource || File::BareName(strTarget).isEmpty())
        return EConversion::Failed;
    QByteArray head;
    if (Platform::ReadFileBytes(Platform::NativeBytes(strSource), head, c_nHeadBytes) != 0 ||
        !LooksLike(eKind, head))
        return EConversion::Failed;
    if (!IsConverterInstalled(strSource))
        return EConversion::NoConverter;
    CConverter converter(mayGoOn, TimeLimitMs(state.nSize));
    if (!converter.IsReady())
        return converter.IsOutOfSpace() ? EConversion::NoSpace : EConversion::Failed;
    const QString strCopy = converter.Path(u"source"_s + File::Extension(strSource).toLower());
    const QString strStem = File::FileTitle(strTarget);
    EConversion eEnd = CopySource(strSource, converter, strCopy);
    if (eEnd == EConversion::Done)
        eEnd = MakePages(converter, eKind, strCopy, strStem,
                         strTitle.isEmpty() ? File::FileTitle(strSource) : strTitle);
    if (eEnd == EConversion::Failed && converter.IsOutOfSpace())
        return EConversion::NoSpace;
    if (eEnd != EConversion::Done)
        return eEnd;
    const QString strFolder = File::ParentFolder(strTarget);
    return Install(converter, strTarget, File::AddBackslash(strFolder) + FilesFolder(strStem));
}

EConversion ConvertOfficeToHtml(const QString& strSource, const QString& strTargetFolder,
                                QString& strResultName, const MayGoOn& mayGoOn) {
    const QString strName = FreePageName(strTargetFolder);
    if (strName.isEmpty())
        return EConversion::Failed;
    const QString strFolder = File::WithoutBackslash(strTargetFolder);
    const EConversion eEnd = SaveOfficeFileAsHtm(strSource, strFolder + u'\\' + strName, mayGoOn);
    if (eEnd != EConversion::Done)
        return eEnd;
    strResultName = strName;
    if (KindOf(strSource) == EKind::Presentation) {
        const QString strStem = strName.chopped(4);
        // The plain page shows the presentation too.
        if (FixFramePage(strStem, strFolder + u'\\' + FilesFolder(strStem)))
            strResultName = FilesFolder(strStem) + u"\\torvaneframe.htm"_s;
    }
    return EConversion::Done;
}

bool FixFramePage(const QString& strStem, const QString& strFrameFolder) {
    if (!IsPlainStem(strStem))
        return false;
    const QString strPage = File::AddBackslash(strFrameFolder) + u"torvaneframe.htm"_s;
    try {
        File::CopyOneFile(CSysInfo::Instance().GetOfficeTemplateFolder(true) + u"torvaneframe.htm"_s, strPage,
                          true);
        const QByteArray old = ReadFileBytes(strPage);
        const QByteArray stem = CodePage::Encode(strStem);
        QByteArray text = LinesOf(old);
        text.replace("<link id=Main-File rel=Main-File href=\"../%PPTName%.htm\">",
                     QByteArray("<link id=Main-File rel=Main-File href=\"../" + stem + ".htm\">"));
        text.replace("var g_FrameFile = \"../%PPTName%.htm\";",
                     QByteArray("var g_FrameFile =\"../" + stem + ".htm\";"));
        // A text that became shorter is written over the old one, whose tail stays behind it.
        ReplaceFile(strPage, text + old.mid(text.size()));
        return true;
    } catch (const CException&) {
        return false;
    }
}

bool IsPptFrameFolder(const QString& strFolder) {
    const QString strBase = File::WithoutBackslash(strFolder);
    return File::IsFolder(strBase) && File::IsFile(strBase + u"\\fullscreen.htm"_s) &&
           File::IsFile(strBase + u"\\pres.xml"_s);
}

} // namespace Torvane::Office

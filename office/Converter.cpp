#include "office/Converter.h"

#include "office/OutputFile.h"
#include "platform/base/Process.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

const QString c_strFolder = u"vorel-office-"_s;
const QString c_strLock = u"in-use"_s;
/// Longer than any conversion may take.
constexpr qint64 c_nOldMs = 7'200'000;

constexpr qint64 c_nLeastLimitMs = 180'000;
constexpr qint64 c_nMostLimitMs = 1'200'000;
constexpr qint64 c_nLimitMsPerMegabyte = 4'000;
// A small file can unpack to more than the machine holds.
constexpr quint64 c_nMaxBytes = quint64{6} << 30;
// What a picture or a PDF file may need. What holds all that the source holds may be larger by its size.
constexpr quint64 c_nMaxFileBytes = quint64{512} << 20;

// Strangers' files are converted: no macro runs, nothing that a document links to is loaded, be it a file of
// this machine or an address, and what would ask the network all the same meets a closed door. The locale
// gives units, fonts and formats where a document says none.
const QByteArray c_profile = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="MacroSecurityLevel" oor:op="fuse"><value>3</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="DisableMacrosExecution" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="BlockUntrustedRefererLinks" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Writer/Content/Update"><prop oor:name="Link" oor:op="fuse"><value>0</value></prop></item>
<item oor:path="/org.openoffice.Office.Calc/Content/Update"><prop oor:name="Link" oor:op="fuse"><value>2</value></prop></item>
<item oor:path="/org.openoffice.Inet/Settings"><prop oor:name="ooInetProxyType" oor:op="fuse"><value>2</value></prop></item>
<item oor:path="/org.openoffice.Inet/Settings"><prop oor:name="ooInetHTTPProxyName" oor:op="fuse"><value>127.0.0.1</value></prop></item>
<item oor:path="/org.openoffice.Inet/Settings"><prop oor:name="ooInetHTTPProxyPort" oor:op="fuse"><value>9</value></prop></item>
<item oor:path="/org.openoffice.Inet/Settings"><prop oor:name="ooInetHTTPSProxyName" oor:op="fuse"><value>127.0.0.1</value></prop></item>
<item oor:path="/org.openoffice.Inet/Settings"><prop oor:name="ooInetHTTPSProxyPort" oor:op="fuse"><value>9</value></prop></item>
<item oor:path="/org.openoffice.Setup/L10N"><prop oor:name="ooSetupSystemLocale" oor:op="fuse"><value>zh-CN</value></prop></item>
<item oor:path="/org.openoffice.Setup/Office"><prop oor:name="ooSetupInstCompleted" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
</oor:items>
)";

QMap<QString, QString> ProgramEnvironment(const QString& strTemporary) {
    QMap<QString, QString> environment{
        {u"TMPDIR"_s, strTemporary}, {u"LC_ALL"_s, u"C.UTF-8"_s}, {u"SAL_USE_VCLPLUGIN"_s, u"svp"_s}};
    // Neither a display nor a running instance is looked for, and no proxy leads past the closed door.
    for (const QString& strName :
         {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"LD_PRELOAD"_s, u"http_proxy"_s, u"https_proxy"_s,
          u"HTTP_PROXY"_s, u"HTTPS_PROXY"_s, u"ALL_PROXY"_s, u"all_proxy"_s})
        environment.insert(strName, QString());
    return environment;
}

} // namespace

CConverter::CConverter(const MayGoOn& mayGoOn, qint64 nLimitMs)
    : m_folder(QDir::tempPath() + u'/' + c_strFolder + u"XXXXXX"_s), m_lock(Path(c_strLock)),
      m_mayGoOn(mayGoOn), m_nLimitMs(nLimitMs) {
    m_time.start();
    if (!m_folder.isValid())
        return;
    m_lock.setStaleLockTime(0);
    if (!m_lock.tryLock())
        return;
    static std::once_flag once;
    std::call_once(once, &RemoveLeftFolders);
    const QDir folder(m_folder.path());
    // Without the whole profile it would run and load what a document wants.
    m_bReady = folder.mkpath(u"profile/user"_s) && folder.mkpath(u"tmp"_s) && folder.mkpath(u"out"_s) &&
               WriteBytes(Path(u"profile/user/registrymodifications.xcu"_s), c_profile);
}

EConversion CConverter::State() const {
    if (m_mayGoOn && !m_mayGoOn())
        return EConversion::Cancelled;
    return m_time.elapsed() > m_nLimitMs ? EConversion::TimedOut : EConversion::Done;
}

bool CConverter::IsOutOfSpace() const {
    return !HasRoom(m_folder.isValid() ? m_folder.path() : QDir::tempPath());
}

void CConverter::StartLimit(qint64 nLimitMs) {
    m_time.start();
    m_nLimitMs = nLimitMs;
}

EConversion CConverter::Run(const QString& strProgram, const QStringList& arguments, quint64 nMaxFileBytes) {
    if (!m_bReady)
        return EConversion::Failed;
    if (strProgram.isEmpty())
        return EConversion::NoConverter;
    EConversion eState = State();
    if (eState != EConversion::Done)
        return eState;
    const auto eEnd = Platform::RunGroup(
        {strProgram, arguments, ProgramEnvironment(Path(u"tmp"_s)), c_nMaxBytes, nMaxFileBytes},
        [this, &eState] {
            eState = State();
            return eState == EConversion::Done;
        });
    return eEnd == Platform::EProgramEnd::NotStarted ? EConversion::NoConverter : eState;
}

EConversion CConverter::Convert(const QString& strSource, const QString& strFilter,
                                const QString& strOutput) {
    const EConversion eEnd = Run(
        OfficeProgram(),
        {u"-env:UserInstallation="_s + QUrl::fromLocalFile(Path(u"profile"_s)).toString(QUrl::FullyEncoded),
         u"--headless"_s, u"--norestore"_s, u"--nologo"_s, u"--nodefault"_s, u"--convert-to"_s, strFilter,
         u"--outdir"_s, Path(u"out"_s), strSource},
        c_nMaxFileBytes + 2 * quint64(QFileInfo(strSource).size()));
    // It ends without an error code also when it could not load the file.
    const bool bMade = QFileInfo(Path(u"out/"_s + strOutput)).size() > 0;
    return eEnd == EConversion::Done && !bMade ? EConversion::Failed : eEnd;
}

EConversion CConverter::DrawPages(const QString& strPdf, const QStringList& options,
                                  const QString& strFolder) {
    return Run(PdfProgram(), options + QStringList{strPdf, strFolder + u"/p"_s}, c_nMaxFileBytes);
}

void RemoveLeftFolders() {
    const QDir place(QDir::tempPath());
    const QFileInfoList folders =
        place.entryInfoList({c_strFolder + u'*'}, QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo& folder : folders) {
        const QString strLock = folder.filePath() + u'/' + c_strLock;
        if (!QFileInfo::exists(strLock)) {
            // It may have been made just now, or by an older version that is still running.
            if (folder.lastModified().msecsTo(QDateTime::currentDateTime()) > c_nOldMs)
                QDir(folder.filePath()).removeRecursively();
            continue;
        }
        QLockFile lock(strLock);
        lock.setStaleLockTime(0);
        if (!lock.tryLock())
            continue;
        // Its owner is gone and won't come back.
        lock.unlock();
        QDir(folder.filePath()).removeRecursively();
    }
}

qint64 TimeLimitMs(quint64 nSourceBytes) {
    return qMin(c_nLeastLimitMs + qint64(nSourceBytes >> 20) * c_nLimitMsPerMegabyte, c_nMostLimitMs);
}

bool HasModuleFor(EKind eKind) {
    const QDir registry(QFileInfo(OfficeProgram()).canonicalPath() + u"/../share/registry"_s);
    // Where it is laid out in another way nothing can be told.
    if (!registry.exists(u"main.xcd"_s))
        return true;
    switch (eKind) {
    case EKind::Document:
        return registry.exists(u"writer.xcd"_s);
    case EKind::Sheet:
        return registry.exists(u"calc.xcd"_s);
    case EKind::Presentation:
        return registry.exists(u"impress.xcd"_s);
    case EKind::None:
        break;
    }
    return true;
}

QString OfficeProgram() {
    const QString strProgram = Platform::FindSystemProgram(u"soffice"_s);
    return strProgram.isEmpty() ? Platform::FindSystemProgram(u"libreoffice"_s) : strProgram;
}

QString PdfProgram() {
    return Platform::FindSystemProgram(u"pdftoppm"_s);
}

} // namespace Torvane::Office

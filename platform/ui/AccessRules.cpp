#include "platform/ui/AccessRules.h"

#include "platform/base/NativePath.h"
#include "platform/ui/SurfaceUrls.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

bool IsOneOf(const QString& strScheme, std::initializer_list<QLatin1String> list) {
    return std::find(list.begin(), list.end(), strScheme) != list.end();
}

bool IsWebScheme(const QString& strScheme) {
    return IsOneOf(strScheme, {QLatin1String("http"), QLatin1String("https"), QLatin1String("ws"),
                               QLatin1String("wss")});
}

bool IsSamePath(const QUrl& a, const QUrl& b) {
    return a.isLocalFile() && b.isLocalFile() && a.toLocalFile() == b.toLocalFile();
}

} // namespace

bool CAccessRules::IsInAllowedFolder(const QString& strNativePath) const {
    // Links are followed before comparing, so that a link inside the course doesn't lead out of it.
    const QString strFile = QFileInfo(strNativePath).canonicalFilePath();
    if (strFile.isEmpty())
        return false;
    for (const QString& strFolder : m_access.Folders) {
        QString strBase = QFileInfo(Platform::ToNative(strFolder)).canonicalFilePath();
        if (strBase.isEmpty())
            continue;
        if (!strBase.endsWith(u'/'))
            strBase += u'/';
        if (strFile.startsWith(strBase) || strFile + u'/' == strBase)
            return true;
    }
    return false;
}

CAccessRules::SVerdict CAccessRules::JudgeFile(const QUrl& url, EResource resource) const {
    if (m_access.bWebPage)
        return {};
    // Of a page in a frame nobody else could mend the link; where a whole page is to go the surface decides.
    const QUrl meant = resource == EResource::Frame ? SurfaceUrls::MeantByLink(url) : url;
    const QString strFound = SurfaceUrls::FindOnDisk(meant);
    if (strFound.isEmpty() || !QFileInfo(strFound).isFile())
        return {};
    const bool bProgramPage = resource == EResource::MainPage && IsSamePath(url, m_programPage);
    const bool bPicture = m_access.bEditing && resource == EResource::PictureOrMedia;
    if (!bProgramPage && !bPicture && !IsInAllowedFolder(strFound))
        return {};
    if (url.toLocalFile() == strFound)
        return {SVerdict::EKind::Allow, {}};
    QUrl target = QUrl::fromLocalFile(strFound);
    if (meant.hasQuery())
        target.setQuery(meant.query(QUrl::FullyEncoded));
    if (meant.hasFragment())
        target.setFragment(meant.fragment(QUrl::FullyEncoded));
    return {SVerdict::EKind::Redirect, target};
}

CAccessRules::SVerdict CAccessRules::Judge(const QUrl& url, EResource resource) const {
    const QString strScheme = url.scheme();
    if (strScheme == QLatin1String("file"))
        return JudgeFile(url, resource);
    if (IsWebScheme(strScheme))
        return {m_access.bNetwork ? SVerdict::EKind::Allow : SVerdict::EKind::Refuse, {}, m_access.bNetwork};
    // These carry their content with them, or nothing.
    if (IsOneOf(strScheme, {QLatin1String("data"), QLatin1String("blob"), QLatin1String("about")}))
        return {SVerdict::EKind::Allow, {}};
    return {};
}

const QStringList& CAccessRules::DesktopSchemes() {
    static const QStringList s_schemes =
        QStringLiteral(
            "http https mailto ftp mms mmsh mmst rtsp rtspt rtspu rtmp pnm news telnet gopher wais")
            .split(u' ');
    return s_schemes;
}

bool CAccessRules::IsForDesktop(const QUrl& url) {
    // Old programs take what begins so for an option.
    return url.isValid() && DesktopSchemes().contains(url.scheme()) && !url.authority().startsWith(u'-');
}

bool CAccessRules::MayOpen(const QUrl& url) const {
    if (IsForDesktop(url))
        return true;
    if (url.scheme() != QLatin1String("file") || m_access.bWebPage)
        return false;
    const QString strFound = SurfaceUrls::FindOnDisk(url);
    return QFileInfo(strFound).isFile() && IsInAllowedFolder(strFound);
}

bool CAccessRules::IsMissing(const QUrl& url) const {
    const QString strPath = SurfaceUrls::UrlToPath(url);
    if (strPath.isEmpty() || m_access.bWebPage || QFileInfo(SurfaceUrls::FindOnDisk(url)).isFile())
        return false;
    const QString strFile = QDir::cleanPath(Platform::ToNative(strPath));
    return std::any_of(m_access.Folders.begin(), m_access.Folders.end(), [&](const QString& strFolder) {
        return strFile.startsWith(QDir::cleanPath(Platform::ToNative(strFolder)) + u'/');
    });
}

#pragma once

#include "platform/ui/WebEngine.h"

#include <QUrl>

/// What a page may load: an imported page is a stranger, and the engine gets no security updates. Pure but
/// for looking at the disk; the engine asks it for every request of a page.
class CAccessRules {
public:
    enum class EResource { MainPage, Frame, PictureOrMedia, Other };
    struct SVerdict {
        enum class EKind { Allow, Refuse, Redirect };
        EKind Kind = EKind::Refuse;
        /// Where to, for Redirect: the same file in the engine's own spelling.
        QUrl Target;
        /// An allowed request goes to the network.
        bool bOfWeb = false;
    };

    CAccessRules() = default;
    explicit CAccessRules(const SEngineAccess& access) : m_access(access) {}

    /// The page that the program itself asks for, which may always load.
    void SetProgramPage(const QUrl& url) { m_programPage = url; }
    const QUrl& ProgramPage() const { return m_programPage; }

    SVerdict Judge(const QUrl& url, EResource resource) const;

    /// Whether the desktop may be asked for a program for the address, should the person want it: a page of
    /// the web, a mail, a film that comes as a stream, and the like.
    static bool IsForDesktop(const QUrl& url);
    /// The schemes of such addresses.
    static const QStringList& DesktopSchemes();

    /// The same for a new window or a link: whether the program may be told of it.
    bool MayOpen(const QUrl& url) const;

    /// Whether the URL points into the folders, and at no file there.
    bool IsMissing(const QUrl& url) const;

private:
    SVerdict JudgeFile(const QUrl& url, EResource resource) const;
    bool IsInAllowedFolder(const QString& strNativePath) const;

    SEngineAccess m_access;
    QUrl m_programPage;
};

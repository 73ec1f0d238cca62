#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// How local references stand in a page that is edited, and how they meet the engine's own URLs.
///
/// In the text of a page, and in every report, an absolute local reference has one form: "file:///Z:/" and
/// the path with forward slashes, where a blank and # % ^ & [ ] { } are escaped, and besides only what would
/// break an attribute or a URL: " < > ? and control characters. Chinese stands as it is. So a reported
/// reference is found in the text by a plain search, and whoever takes those escapes back gets the path.
namespace SurfaceUrls {

/// The form above of a path in backslash form.
QString PathToReference(const QString& strPath);

/// The form above of an absolute local reference in any spelling: a file URL of the engine or of the page, or
/// a plain path with a drive. Query and fragment of a URL stay as they are. No value for every other text.
std::optional<QString> CanonicalReference(const QString& strText);

/// What is reported for a reference with the given text that the engine resolves to the given URL: the
/// canonical form of a local one, an absolute other one as it stands in the text, a relative one resolved.
QString ReportedReference(const QString& strText, const QString& strResolved);

/// The backslash path at which a file URL points; empty when it is none or names another machine.
QString UrlToPath(const QUrl& url);

/// A file URL as PathToDocumentUrl has it, with a fragment as it came; every other URL as it stands.
QString DocumentUrl(const QUrl& url);

/// What the engine is to load for a path in backslash or native form, a file URL in any form, a web URL or
/// "about:blank". Not valid for anything else. A path is looked up on the disk, so that its letter case and
/// doubled escapes are mended.
QUrl EngineUrl(const QString& strTarget);

/// The native path of an existing file or folder that a file URL means: as it stands, ignoring letter case,
/// or after taking back the escapes of an URL that was escaped twice, or none where the name itself holds
/// what looks like one. Empty when there is none.
QString FindOnDisk(const QUrl& url);

/// Where a link leads whose file's name may hold "#" or "?" without an escape: the URL itself, unless there
/// is no such file and there is one by a longer name.
QUrl MeantByLink(const QUrl& url);

} // namespace SurfaceUrls

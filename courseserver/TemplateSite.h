#pragma once

#include "courseserver/HttpServer.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The pages of the template site, made from a folder: each template is a folder of its own in the folder of
/// its type, "<folder>/<type>/<name>". A folder that has no folder "ReportTemplates" counts as that itself.
class CTemplateSite {
public:
    /// Native path; empty when there are no templates.
    explicit CTemplateSite(const QString& strFolder) : m_strFolder(strFolder) {}

    /// Answers the list, a preview or a download; nothing for any other path.
    std::optional<HttpReply> Answer(const HttpRequest& request) const;

private:
    QString TypeFolder(const QString& strType) const;
    QStringList ListTemplates(const QString& strType) const;
    HttpReply List(const QByteArray& query) const;
    HttpReply Download(const QByteArray& query) const;
    std::optional<HttpReply> Preview(const QString& strPath) const;

    QString m_strFolder;
};

/// Packs what is in a folder into a ZIP file with names relative to it, in UTF-8. Nothing when it can't be
/// read or written.
std::shared_ptr<QFile> PackFolder(const QString& strFolder);

#pragma once

#include "platform/base/People.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// The command that fetches a template from the server's template site, without its window: the list, the
/// preview, and the companion program that fetches and unpacks. The server's address is used as the settings
/// hold it.
class CTemplateDownload {
public:
    explicit CTemplateDownload(Torvane::Dialog::MFC::IPeople& people,
                               const QString& strType = QStringLiteral("ReportTemplates"));

    /// Fetches the names; false ends the command: the person has been told, or has given it up. The list may
    /// stay empty.
    bool FetchList();
    const QStringList& GetNames() const { return m_names; }

    /// Fetches the template's picture; the path of its file in backslash form. Nothing when it failed, and
    /// the person has been told, or when she gave it up.
    std::optional<QString> FetchPreview(const QString& strName);
    void TellNoPreview();

    /// False, and the person has been told, for a name that no template can have.
    bool CheckChoice(const QString& strName);

    /// Runs the companion for a checked name and waits for its end. False when the person keeps what is there
    /// or the companion could not start.
    bool Fetch(const QString& strName);

    /// In the order received, untrimmed; nothing behind the last comma adds nothing.
    static QStringList SplitNames(const QString& strLine);
    static QString CompanionCommandLine(const QString& strProgramFolder, const QString& strServerUrl,
                                        const QString& strTemplatesFolder, const QString& strName);

private:
    /// A wait of more than a moment shows the status, and may be given up.
    QByteArray Get(const QString& strBelow, const QString& strStatus);

    Torvane::Dialog::MFC::IPeople& m_people;
    QString m_strType;
    QStringList m_names;
};

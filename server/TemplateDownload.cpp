#include "server/TemplateDownload.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "platform/base/Process.h"
#include "server/HttpClient.h"
#include "server/ServerWait.h"
#include "server/Texts.h"

#include <algorithm>

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Net::CCancelledException;

CTemplateDownload::CTemplateDownload(Torvane::Dialog::MFC::IPeople& people, const QString& strType)
    : m_people(people), m_strType(strType) {}

QByteArray CTemplateDownload::Get(const QString& strBelow, const QString& strStatus) {
    CServerWait wait(m_people, nullptr, strStatus);
    Torvane::Net::CHttpClient client;
    client.SetWaitStep([&wait] { return wait.Step(); });
    const QString strUrl = CSysInfo::Instance().GetServerURL() + strBelow;
    client.Request(CodePage::Encode(strUrl), Torvane::Net::EHttpMethod::Get, "TorvaneHttpAgent");
    return client.GetBody();
}

bool CTemplateDownload::FetchList() {
    QByteArray body;
    for (;;) {
        try {
            body = Get(QStringLiteral("/Down/TemplateList.asp?Type=") + m_strType,
                       ServerText::c_strFetchingTemplates);
            break;
        } catch (const CCancelledException&) {
            return false;
        } catch (const CRunException& exception) {
            if (m_people.Ask(exception.GetMessage(), ServerText::c_strTitleError, BoxButtons::RetryCancel,
                             BoxIcon::Stop) != BoxAnswer::Retry)
                return false;
        }
    }
    if (body.isEmpty()) {
        m_people.Error(ServerText::c_strNoTemplates);
        return false;
    }
    m_names = SplitNames(CodePage::Decode(body));
    return true;
}

QStringList CTemplateDownload::SplitNames(const QString& strLine) {
    QStringList names;
    SplitText(strLine, names, QLatin1Char(','));
    if (names.last().isEmpty())
        names.removeLast();
    return names;
}

std::optional<QString> CTemplateDownload::FetchPreview(const QString& strName) {
    const QString strFolder = CSysInfo::Instance().GetSysDataFolder(true) + QStringLiteral("Temporary");
    const QString strTarget = strFolder + QStringLiteral("\\TemplatePreview.jpg");
    try {
        const QByteArray picture =
            Get(QLatin1Char('/') + m_strType + QLatin1Char('/') + strName + QStringLiteral("/Preview.jpg"),
                ServerText::c_strFetchingPreview);
        Torvane::File::TryCreateFolderPath(strFolder);
        ReplaceFile(strTarget, picture);
        return strTarget;
    } catch (const CCancelledException&) {
        return std::nullopt;
    } catch (const CRunException&) {
        TellNoPreview();
        return std::nullopt;
    }
}

void CTemplateDownload::TellNoPreview() {
    m_people.Error(ServerText::c_strNoPreview);
}

bool CTemplateDownload::CheckChoice(const QString& strName) {
    // The name becomes a folder and part of a command line: an empty one would stand for the folder of all
    // templates, a separator would lead out of it, a quote would end the argument.
    const auto bad = [](QChar c) { return c.unicode() < u' ' || QStringView(u"\\/\",").contains(c); };
    if (strName.isEmpty() || strName == QLatin1String(".") || strName == QLatin1String("..") ||
        std::any_of(strName.begin(), strName.end(), bad)) {
        m_people.Notice(ServerText::c_strSelectTemplate);
        return false;
    }
    return true;
}

QString CTemplateDownload::CompanionCommandLine(const QString& strProgramFolder, const QString& strServerUrl,
                                                const QString& strTemplatesFolder, const QString& strName) {
    return QStringLiteral("\"%1\\VorelFetch.exe\" "
                          "\"%2/Down/DownTemplate.asp?Type=ReportTemplates&Name=%4,%3\\%4\"")
        .arg(strProgramFolder, strServerUrl, strTemplatesFolder, strName);
}

bool CTemplateDownload::Fetch(const QString& strName) {
    const CSysInfo& settings = CSysInfo::Instance();
    const QString strFolder = settings.GetTemplatesFolder(true) + strName;
    if (Torvane::File::IsFolder(strFolder) && !Torvane::File::IsFolderEmpty(strFolder) &&
        m_people.Ask(ServerText::c_strTemplateExists.arg(Platform::ToNativeExact(strFolder)),
                     ServerText::c_strTitleNotice, BoxButtons::YesNo, BoxIcon::Question) != BoxAnswer::Yes)
        return false;
    const auto pStop = m_people.StopInput();
    return Platform::RunAndWait(CompanionCommandLine(settings.GetProgramFolder(false),
                                                     settings.GetServerURL(),
                                                     settings.GetTemplatesFolder(false), strName),
                                [this] { m_people.KeepPainting(); });
}

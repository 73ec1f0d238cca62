// The text of the page that is edited: in and out, by commands, and what is known of its selection.
#include "platform/ui/WebBrowser.h"

#include "platform/base/NativePath.h"
#include "platform/ui/LinkDialog.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/WebBrowserCalls.h"

#include <QColor>
#include <QPointer>

using namespace SurfaceCalls;

namespace {

constexpr int c_nMaxTableSize = 1000;

} // namespace

QJsonObject SurfaceCalls::NewNames(const QJsonArray& references) {
    QJsonObject names;
    for (const QJsonValue& reference : references) {
        const QString strText = reference.toString();
        const auto strCanonical = SurfaceUrls::CanonicalReference(strText);
        if (strCanonical && *strCanonical != strText)
            names.insert(strText, *strCanonical);
    }
    return names;
}

bool CWebBrowser2Ex::SetBrowserDesignMode(bool bOn) {
    const CCallGuard guard;
    if (guard.IsRefused())
        return false;
    if (!m_bPageLoaded)
        return !bOn;
    return IsTrue(Ask(QStringLiteral("designMode"), {bOn}));
}

bool CWebBrowser2Ex::GetBrowserBodyInnerHTML(QString& strHtml) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    for (int nTry = 0; nTry < 2; ++nTry) {
        const SEngineAnswer answer = Ask(QStringLiteral("bodyHtml"), {});
        if (!pAlive || !answer.HasValue())
            return false;
        const QJsonObject names = NewNames(answer.Value[QLatin1String("local")].toArray());
        if (names.isEmpty() || nTry == 1) {
            strHtml = answer.Value[QLatin1String("html")].toString();
            return true;
        }
        // References that came in by another way, as by pasting, get the one form first.
        if (!IsTrue(Ask(QStringLiteral("rename"), {names})) || !pAlive)
            return false;
    }
    return false;
}

void CWebBrowser2Ex::AskChangedHtml(std::function<void(std::optional<QString>)> answer) {
    if (!m_bPageLoaded)
        return answer(std::nullopt);
    m_pEngine->CallLater(QStringLiteral("changedHtml"), {},
                         [answer = std::move(answer)](const SEngineAnswer& reply) {
                             answer(reply.HasValue() ? std::optional(reply.Value.toString()) : std::nullopt);
                         });
}

void CWebBrowser2Ex::ClearLater() {
    if (m_bPageLoaded)
        m_pEngine->CallLater(QStringLiteral("loadBodyHtml"), {QString()}, [](const SEngineAnswer&) {});
}

bool CWebBrowser2Ex::SetBrowserBodyInnerHTML(const QString& strHtml) {
    const CCallGuard guard;
    return !guard.IsRefused() && EnsureDocument() && m_bPageLoaded &&
           PutBody(QStringLiteral("setBodyHtml"), {strHtml});
}

bool CWebBrowser2Ex::WriteBackBody(const QString& strHtml) {
    const CCallGuard guard;
    return !guard.IsRefused() && EnsureDocument() && m_bPageLoaded &&
           PutBody(QStringLiteral("writeBack"), {strHtml});
}

bool CWebBrowser2Ex::ExecuteIHTMLDocumentCmd(const QString& strCommand, bool bShowUi, const QVariant& value) {
    if (bShowUi && strCommand.compare(u"CreateLink", Qt::CaseInsensitive) == 0)
        return CreateLinkWithDialog();
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    QString strValue = value.toString();
    if (value.typeId() != QMetaType::QString && strCommand.endsWith(u"Color", Qt::CaseInsensitive)) {
        const uint nColour = value.toUInt();
        strValue = QColor(nColour & 0xFF, (nColour >> 8) & 0xFF, (nColour >> 16) & 0xFF).name();
    }
    return IsTrue(Ask(QStringLiteral("command"), {strCommand, strValue}));
}

bool CWebBrowser2Ex::CreateLinkWithDialog() {
    const QPointer<CWebBrowser2Ex> pAlive(this);
    SEngineAnswer answer;
    {
        const CCallGuard guard;
        if (guard.IsRefused() || !m_bPageLoaded)
            return false;
        answer = Ask(QStringLiteral("linkAtCaret"), {});
        if (!pAlive || !answer.HasValue())
            return false;
    }
    const auto strAddress = AskLinkAddress(this, answer.Value[QLatin1String("href")].toString());
    const CCallGuard guard;
    if (!pAlive || !strAddress || guard.IsRefused() || !m_bPageLoaded)
        return false;
    // What a person types for a file is its native path.
    const QString strText = strAddress->startsWith(u'/') ? Platform::FromNative(*strAddress) : *strAddress;
    const QString strReference = SurfaceUrls::CanonicalReference(strText).value_or(strText);
    return IsTrue(Ask(QStringLiteral("createLink"), {strReference}));
}

bool CWebBrowser2Ex::InsertBrowserText(const QString& strHtml, bool* pbLate) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QPointer<CWebBrowser2Ex> pAlive(this);
    const SEngineAnswer answer = Ask(QStringLiteral("localReferences"), {strHtml});
    if (!pAlive || !answer.HasValue())
        return false;
    const SEngineAnswer done = Ask(QStringLiteral("insert"), {strHtml, NewNames(answer.Value.toArray())});
    if (pbLate)
        *pbLate = done.State == SEngineAnswer::EState::TimeOut;
    return IsTrue(done);
}

bool CWebBrowser2Ex::HasSelection() {
    const CCallGuard guard;
    return !guard.IsRefused() && m_bPageLoaded && IsTrue(Ask(QStringLiteral("hasSelection"), {}));
}

bool CWebBrowser2Ex::GetSelectedText(QString& strText) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("selectedText"), {});
    if (!answer.HasValue())
        return false;
    strText = answer.Value.toString();
    return true;
}

bool CWebBrowser2Ex::HasSelectTable() {
    STableInfo info;
    return GetSelectedTableInfo(info);
}

bool CWebBrowser2Ex::GetSelectedTableInfo(STableInfo& info) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("tableInfo"), {});
    if (!answer.HasValue())
        return false;
    const auto text = [&](QLatin1String strKey) { return answer.Value[strKey].toString(); };
    info = {answer.Value[QLatin1String("rows")].toInt(),
            answer.Value[QLatin1String("columns")].toInt(),
            text(QLatin1String("width")),
            text(QLatin1String("background")),
            text(QLatin1String("borderColour")),
            text(QLatin1String("border")),
            text(QLatin1String("cellSpacing")),
            text(QLatin1String("cellPadding"))};
    return true;
}

bool CWebBrowser2Ex::EditSelectedTable(const STableInfo& info, bool* pbLate) {
    const auto mayBe = [](int nWanted, int nNow) {
        return nWanted == nNow || (nWanted >= 1 && nWanted <= c_nMaxTableSize);
    };
    const QPointer<CWebBrowser2Ex> pAlive(this);
    STableInfo now;
    if (!GetSelectedTableInfo(now) || !pAlive || !mayBe(info.nRows, now.nRows) ||
        !mayBe(info.nColumns, now.nColumns))
        return false;
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const QJsonObject arguments{{QStringLiteral("rows"), info.nRows},
                                {QStringLiteral("columns"), info.nColumns},
                                {QStringLiteral("width"), info.strWidth},
                                {QStringLiteral("background"), info.strBackground},
                                {QStringLiteral("borderColour"), info.strBorderColour},
                                {QStringLiteral("border"), info.strBorder},
                                {QStringLiteral("cellSpacing"), info.strCellSpacing},
                                {QStringLiteral("cellPadding"), info.strCellPadding}};
    const SEngineAnswer done = Ask(QStringLiteral("editTable"), {arguments});
    if (pbLate)
        *pbLate = done.State == SEngineAnswer::EState::TimeOut;
    return IsTrue(done);
}

bool CWebBrowser2Ex::ListReferences(const QString& strSelector, const QString& strAttribute,
                                    QStringList& list) {
    const CCallGuard guard;
    if (guard.IsRefused() || !m_bPageLoaded)
        return false;
    const SEngineAnswer answer = Ask(QStringLiteral("references"), {strSelector, strAttribute});
    if (!answer.HasValue())
        return false;
    list.clear();
    const QJsonArray references = answer.Value.toArray();
    for (const QJsonValue& reference : references)
        list.append(SurfaceUrls::ReportedReference(reference[QLatin1String("text")].toString(),
                                                   reference[QLatin1String("url")].toString()));
    return true;
}

bool CWebBrowser2Ex::GetAllImageSrc(QStringList& list) {
    return ListReferences(QStringLiteral("img"), QStringLiteral("src"), list);
}

bool CWebBrowser2Ex::GetAllEmbededSrc(QStringList& list) {
    return ListReferences(QStringLiteral("embed"), QStringLiteral("src"), list);
}

bool CWebBrowser2Ex::GetAllAnchorHref(QStringList& list) {
    return ListReferences(QStringLiteral("a"), QStringLiteral("href"), list);
}

void CWebBrowser2Ex::AskCaretState(const QStringList& commands,
                                   std::function<void(const SCaretState&)> answer) {
    if (!m_bPageLoaded)
        return;
    QJsonArray arguments;
    arguments.append(QJsonArray::fromStringList(commands));
    m_pEngine->CallLater(
        QStringLiteral("caretState"), arguments, [answer = std::move(answer)](const SEngineAnswer& reply) {
            if (!reply.HasValue())
                return;
            SCaretState state;
            const QJsonArray pressed = reply.Value[QLatin1String("pressed")].toArray();
            for (const QJsonValue& name : pressed)
                state.Pressed.append(name.toString());
            state.strFont = reply.Value[QLatin1String("font")].toString();
            state.strSize = reply.Value[QLatin1String("size")].toString();
            const auto isSo = [&](QLatin1String strKey) { return reply.Value[strKey].toBool(); };
            state.bCanUndo = isSo(QLatin1String("canUndo"));
            state.bCanRedo = isSo(QLatin1String("canRedo"));
            state.bHasSelection = isSo(QLatin1String("hasSelection"));
            state.bInLink = isSo(QLatin1String("inLink"));
            answer(state);
        });
}

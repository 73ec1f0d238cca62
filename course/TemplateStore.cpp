#include "course/TemplateStore.h"

#include "foundation/Exceptions.h"
#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace Torvane::File;

namespace {

constexpr quint32 c_nWhite = 0xFFFFFF;
constexpr qsizetype c_nColorLength = 7;

/// Notes what stands directly in a folder and goes no deeper.
class CListing : public IWalkFilter {
public:
    QStringList Files;
    QStringList Folders;

    bool Cancelled() override { return false; }
    bool AcceptFile(const QString& strPath) override {
        Files.append(BareName(strPath));
        return false;
    }
    bool AcceptFolder(const QString& strPath) override {
        Folders.append(BareName(WithoutBackslash(strPath)));
        return false;
    }

    static CListing Of(const QString& strFolder) {
        CListing listing;
        if (!strFolder.isEmpty())
            WalkFolder(strFolder, nullptr, nullptr, nullptr, false, &listing, false);
        return listing;
    }
};

/// Template names come from project files and page names from templates, that is, from anywhere.
bool IsPlainName(const QString& strName) {
    return !strName.isEmpty() && strName != u"." && strName != u".." && !strName.contains(u'\\') &&
           !strName.contains(u'/') && !strName.contains(QChar(u'\0'));
}

/// "N" and digits, in either case.
bool IsNodeFolderName(const QString& strName) {
    return strName.size() > 1 && (strName[0] == u'N' || strName[0] == u'n') &&
           std::all_of(strName.begin() + 1, strName.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

int HexValue(QChar c) {
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c.unicode() - u'A' + 10;
    return 0;
}

/// A missing file counts as an empty one.
QByteArray TreeText(const QString& strPath) {
    QByteArray text;
    try {
        text = ReadFileBytes(strPath);
    } catch (const Torvane::CRunException&) {
        return {};
    }
    if (text.endsWith("\r\n"))
        text.chop(2);
    return text;
}

} // namespace

CTemplateStore::CTemplateStore(const QString& strTemplatesFolder)
    : m_strFolder(WithoutBackslash(strTemplatesFolder)) {}

void CTemplateStore::ListTemplates(QStringList& list) const {
    list += CListing::Of(m_strFolder).Folders;
}

void CTemplateStore::ListPages(const QString& strTemplate, QStringList& list) const {
    for (const QString& strFile : CListing::Of(GetPagesFolder(strTemplate)).Files) {
        if (LowerAscii(Extension(strFile)) == u".htm")
            list.append(FileTitle(strFile));
    }
}

QString CTemplateStore::Below(const QString& strTemplate, const QString& strTail) const {
    return IsPlainName(strTemplate) ? m_strFolder + u'\\' + strTemplate + strTail : QString();
}

QString CTemplateStore::GetTemplateFolder(const QString& strTemplate) const {
    return Below(strTemplate, QString());
}

QString CTemplateStore::GetIconPath(const QString& strTemplate) const {
    return Below(strTemplate, u"\\icon.bmp"_s);
}

QString CTemplateStore::GetPagesFolder(const QString& strTemplate) const {
    return Below(strTemplate, u"\\eht\\htm\\"_s);
}

QString CTemplateStore::GetPagePath(const QString& strTemplate, const QString& strPage) const {
    return IsPlainName(strPage) ? Below(strTemplate, u"\\eht\\htm\\"_s + strPage + u".htm"_s) : QString();
}

QString CTemplateStore::GetDefaultPagePath(const QString& strTemplate) const {
    return GetPagePath(strTemplate, u"通用页面"_s);
}

QString CTemplateStore::GetPagePreviewPath(const QString& strTemplate, const QString& strPage) const {
    return IsPlainName(strPage) ? Below(strTemplate, u"\\PreviewImgs\\"_s + strPage + u".jpg"_s) : QString();
}

QString CTemplateStore::GetPreviewPath(const QString& strTemplate) const {
    return Below(strTemplate, u"\\Preview.jpg"_s);
}

QString CTemplateStore::GetSkinFolder(const QString& strTemplate) const {
    return Below(strTemplate, u"\\Skin"_s);
}

QString CTemplateStore::GetInitialNodesPath(const QString& strTemplate) const {
    return Below(strTemplate, u"\\InitialNodes.txt"_s);
}

quint32 CTemplateStore::GetBackColor(const QString& strTemplate) const {
    return ReadBackColor(Below(strTemplate, u"\\背景色.txt"_s));
}

quint32 ReadBackColor(const QString& strPath) {
    const QString strText = strPath.isEmpty() ? QString() : ReadTextFile(strPath);
    if (strText.size() != c_nColorLength || strText.front() != u'#')
        return c_nWhite;
    quint32 nColor = 0;
    for (int nPair = 0; nPair < 3; ++nPair) {
        const int nValue = HexValue(strText[1 + 2 * nPair]) * 16 + HexValue(strText[2 + 2 * nPair]);
        nColor |= static_cast<quint32>(nValue) << (8 * nPair);
    }
    return nColor;
}

bool CTemplateStore::HasSameNodes(const QString& strA, const QString& strB) const {
    return TreeText(GetInitialNodesPath(strA)) == TreeText(GetInitialNodesPath(strB));
}

QStringList SkinFolders(const QString& strSkinFolder) {
    QStringList folders = CListing::Of(strSkinFolder).Folders;
    folders.removeIf(IsNodeFolderName);
    return folders;
}

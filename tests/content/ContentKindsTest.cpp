#include "content/ContentKinds.h"
#include "tests/support/Testing.h"

namespace {

using ContentKinds::EField;

TEST(ContentKindsTest, OnlyTheGeneralCommandIsAdvised) {
    const auto advised = [](const QString& strTitle) {
        return ContentKinds::PresetFor(EContentKind::None, strTitle);
    };
    EXPECT_EQ(advised(u"参考文献"_s).Kind, EContentKind::ExternalLink);
    EXPECT_EQ(advised(u"参考文献 "_s).Kind, EContentKind::EditorPage);
    EXPECT_EQ(ContentKinds::PresetTip(advised(u"%1"_s)),
              u"您选择的栏目是%1, 我们建议您采用内部编辑器形势；。"
              u"创建内部编辑器类型的栏目。内部编辑器里，您可以象使用Word一样使用。"_s);
    const ContentPreset asked = ContentKinds::PresetFor(EContentKind::Site, u"参考文献"_s);
    EXPECT_EQ(asked.Kind, EContentKind::Site);
    EXPECT_TRUE(asked.strAdvice.isEmpty());
    for (const ContentKinds::Row& row : ContentKinds::Rows())
        EXPECT_EQ(&row - ContentKinds::Rows().data(), static_cast<int>(row.Kind));
}

/// The texts go to the parameters of the kind, in their order there.
struct Case {
    EContentKind Kind;
    QString strFirst, strSecond;
    /// Nothing for no refusal.
    QString strMessage = QString();
    EField Field = EField::None;
    bool bTypedFilter = false;
};

CNodeFileParams ParamsOf(const Case& c) {
    CNodeFileParams params;
    params.Kind = c.Kind;
    for (QString* pText : {&params.ExternalFile, &params.SiteFolder, &params.LinkUrl, &params.SiteLinkUrl,
                           &params.CoursewareFolder, &params.ImportFolder})
        *pText = c.strFirst;
    params.SiteHomePage = params.ImportFilter = c.strSecond;
    return params;
}

TEST(ContentKindsTest, EveryKindSaysWhatItLacks) {
    const CTempFolder folder;
    for (const auto& strFile :
         {u"甲\\a.htm"_s, u"甲\\深\\b.htm"_s, u"甲乙\\a.htm"_s, u"课\\A.CML"_s, u"课\\b.arx"_s,
          u"课\\.c.htm"_s, u"半\\a.cml"_s, u"半\\b.arx"_s, u"半\\c.html"_s})
        folder.Write(strFile, "x");
    folder.MakeFolder(u"半\\d.htm"_s);
    const QString strSite = folder.Path(u"甲"_s), strPage = strSite + u"\\a.htm",
                  strNone = folder.Path(u"无"_s);
    const QString strMissing = u"您选择外部文件不存在, 请您重新选择！"_s;
    const QString strOutside = u"站点首页不在站点目录内，请您重新选择!"_s;
    const QString strNotValid = u"系统检测到您输入的网址不合法，您希望更正输入吗！"_s;
    const QString strBadFilter = u"请您正确输入过滤文件类型"_s;
    using enum EContentKind;
    const Case cases[] = {
        {None, {}, {}, u"参数错误！"_s},
        {EditorPage, {}, {}},
        {Video, {}, {}},
        {ExternalFile, {}, {}, u"请您选择外部文件！"_s, EField::ExternalFile},
        {ExternalFile, strSite, {}, strMissing, EField::ExternalFile},
        {ExternalFile, u"CMakeCache.txt"_s, {}, strMissing, EField::ExternalFile},
        {ExternalFile, folder.Path(u"甲\\A.HTM"_s), {}},
        {Site, {}, strPage, u"请您选择站点目录！"_s, EField::SiteFolder},
        {Site, strNone, {}, u"站点目录文件夹不存在，请你重新选择！"_s, EField::SiteFolder},
        {Site, strSite, {}, u"请您选择站点首页！"_s, EField::SiteHomePage},
        {Site, strSite, strSite + u"\\x.htm", u"站点首页不存在，请你重新选择！"_s, EField::SiteHomePage},
        {Site, strSite, folder.Path(u"甲乙\\a.htm"_s), strOutside, EField::SiteHomePage},
        {Site, strSite, strSite + u"\\..\\甲乙\\a.htm", strOutside, EField::SiteHomePage},
        {Site, strSite, strSite + u"\\深\\b.htm"},
        {Site, strSite + u'\\', strPage},
        {ExternalLink, {}, {}, u"链接地址不能为空！"_s, EField::LinkUrl},
        {ExternalLink, u"www.a.cn"_s, {}, strNotValid, EField::LinkUrl},
        {ExternalLink, u"javascript:x"_s, {}, strNotValid, EField::LinkUrl},
        {ExternalLink, u"https:/a.cn"_s, {}, strNotValid, EField::LinkUrl},
        {ExternalLink, u"HTTPS://a.cn"_s, {}},
        {ExternalLink, u"Wais:a"_s, {}},
        {Courseware, {}, {}, u"请您选择方正奥思课件目录！"_s, EField::CoursewareFolder},
        {Courseware, strPage, {}, u"奥思课件目录不存在，请你重新选择！"_s, EField::CoursewareFolder},
        {Courseware,
         folder.Path(u"半"_s),
         {},
         u"您选择的目录不是奥思课件目录, 请您重新选择！"_s,
         EField::CoursewareFolder},
        {Courseware, folder.Path(u"课"_s), {}},
        {Folder, {}, {}, u"请您选择导入目录！"_s, EField::ImportFolder},
        {Folder, strNone, u"*.*"_s, u"导入目录不存在，请你重新选择！"_s, EField::ImportFolder},
        {Folder, strSite, u"*.htm;*.htm;"_s},
        {Folder, strSite, {}, u"请您输入过滤文件类型"_s, EField::ImportFilter, true},
        {Folder, strSite, u".doc;.htm"_s, strBadFilter, EField::ImportFilter, true},
        {Folder, strSite, u"*.doc;"_s, strBadFilter, EField::ImportFilter, true},
        {Folder, strSite, u"*.doc;*."_s, strBadFilter, EField::ImportFilter, true},
        {Folder, strSite, u"*.doc;*.x"_s, {}, EField::None, true},
        {InSiteLink, {}, {}, u"对不起，链接地址不能为空！请您选择。"_s, EField::InSiteLink},
        {InSiteLink, u"x"_s, {}},
    };
    for (const Case& c : cases) {
        const auto refusal =
            ContentKinds::Check(ParamsOf(c), c.bTypedFilter).value_or(ContentKinds::Refusal());
        EXPECT_EQ(refusal.strMessage, c.strMessage)
            << static_cast<int>(c.Kind) << ' ' << c.strFirst << ' ' << c.strSecond;
        EXPECT_EQ(refusal.Field, c.Field) << c.strMessage;
        EXPECT_EQ(refusal.bEmptied, c.strMessage == strMissing) << c.strMessage;
    }
}

} // namespace

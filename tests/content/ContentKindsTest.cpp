#include "content/ContentKinds.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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

/// One case of a check; an empty text stands for no refusal.
struct Case {
    std::function<void(CNodeFileParams&)> fill = nullptr;
    QString strMessage = QString();
    EField Field = EField::None;
};

void Expect(EContentKind kind, const QList<Case>& cases, bool bTypedFilter = false) {
    int nCase = 0;
    for (const Case& c : cases) {
        CNodeFileParams params;
        params.Kind = kind;
        if (c.fill)
            c.fill(params);
        const auto refusal = ContentKinds::Check(params, bTypedFilter).value_or(ContentKinds::Refusal());
        EXPECT_EQ(refusal.strMessage.toStdString(), c.strMessage.toStdString()) << nCase;
        EXPECT_EQ(refusal.Field, c.Field) << nCase;
        EXPECT_EQ(refusal.bEmptied, c.strMessage.startsWith(u"您选择外部文件不存在")) << nCase;
        ++nCase;
    }
}

TEST(ContentKindsTest, EveryKindSaysWhatItLacks) {
    const CTempFolder folder;
    for (const auto& strFile :
         {u"甲\\a.htm"_s, u"甲\\深\\b.htm"_s, u"甲乙\\a.htm"_s, u"课\\A.CML"_s, u"课\\b.arx"_s,
          u"课\\.c.htm"_s, u"半\\a.cml"_s, u"半\\b.arx"_s, u"半\\c.html"_s})
        folder.Write(strFile, "x");
    folder.MakeFolder(u"半\\d.htm"_s);
    const QString strSite = folder.Path(u"甲"_s);

    Expect(EContentKind::None, {{{}, u"参数错误！"_s}});
    Expect(EContentKind::EditorPage, {Case()});
    Expect(EContentKind::Video, {Case()});

    const auto file = [](const QString& str) { return [=](CNodeFileParams& p) { p.ExternalFile = str; }; };
    const QString strMissing = u"您选择外部文件不存在, 请您重新选择！"_s;
    Expect(EContentKind::ExternalFile, {{{}, u"请您选择外部文件！"_s, EField::ExternalFile},
                                        {file(strSite), strMissing, EField::ExternalFile},
                                        {file(u"CMakeCache.txt"_s), strMissing, EField::ExternalFile},
                                        {file(folder.Path(u"甲\\A.HTM"_s))}});

    Expect(
        EContentKind::ExternalEditor,
        {{{}, u"请您选择新建类型, 如果无法选择，请检查您的Office是否正确安装！"_s}, {[](CNodeFileParams& p) {
             p.OfficeKind = EOfficeKind::Excel;
             p.SaveAsHtml = true;
         }}});

    const auto site = [](const QString& strFolder, const QString& strPage) {
        return [=](CNodeFileParams& p) {
            p.SiteFolder = strFolder;
            p.SiteHomePage = strPage;
        };
    };
    const QString strOutside = u"站点首页不在站点目录内，请您重新选择!"_s;
    Expect(
        EContentKind::Site,
        {{site({}, strSite + u"\\a.htm"_s), u"请您选择站点目录！"_s, EField::SiteFolder},
         {site(folder.Path(u"无"_s), {}), u"站点目录文件夹不存在，请你重新选择！"_s, EField::SiteFolder},
         {site(strSite, {}), u"请您选择站点首页！"_s, EField::SiteHomePage},
         {site(strSite, strSite + u"\\x.htm"_s), u"站点首页不存在，请你重新选择！"_s, EField::SiteHomePage},
         {site(strSite, folder.Path(u"甲乙\\a.htm"_s)), strOutside, EField::SiteHomePage},
         {site(strSite, strSite + u"\\..\\甲乙\\a.htm"_s), strOutside, EField::SiteHomePage},
         {site(strSite, strSite + u"\\深\\b.htm"_s)},
         {site(strSite + u'\\', strSite + u"\\a.htm"_s)}});

    const auto url = [](const QString& str) { return [=](CNodeFileParams& p) { p.LinkUrl = str; }; };
    const QString strNotValid = u"系统检测到您输入的网址不合法，您希望更正输入吗！"_s;
    Expect(EContentKind::ExternalLink, {{{}, u"链接地址不能为空！"_s, EField::LinkUrl},
                                        {url(u"www.a.cn"_s), strNotValid, EField::LinkUrl},
                                        {url(u"javascript:x"_s), strNotValid, EField::LinkUrl},
                                        {url(u"https:/a.cn"_s), strNotValid, EField::LinkUrl},
                                        {url(u"HTTPS://a.cn"_s)},
                                        {url(u"mailto:a"_s)},
                                        {url(u"Wais:a"_s)}});

    const auto courseware = [](const QString& str) {
        return [=](CNodeFileParams& p) { p.CoursewareFolder = str; };
    };
    Expect(EContentKind::Courseware,
           {{{}, u"请您选择方正奥思课件目录！"_s, EField::CoursewareFolder},
            {courseware(strSite + u"\\a.htm"_s), u"奥思课件目录不存在，请你重新选择！"_s,
             EField::CoursewareFolder},
            {courseware(folder.Path(u"半"_s)), u"您选择的目录不是奥思课件目录, 请您重新选择！"_s,
             EField::CoursewareFolder},
            {courseware(folder.Path(u"课"_s))}});

    const auto import = [&](const QString& strFolder, const QString& strFilter) {
        return [=](CNodeFileParams& p) {
            p.ImportFolder = strFolder;
            p.ImportFilter = strFilter;
        };
    };
    const QString strBadFilter = u"请您正确输入过滤文件类型"_s;
    Expect(EContentKind::Folder, {{{}, u"请您选择导入目录！"_s, EField::ImportFolder},
                                  {import(folder.Path(u"无"_s), u"*.*"_s),
                                   u"导入目录不存在，请你重新选择！"_s, EField::ImportFolder},
                                  {import(strSite, u"*.htm;*.htm;"_s)}});
    Expect(EContentKind::Folder,
           {{import(strSite, {}), u"请您输入过滤文件类型"_s, EField::ImportFilter},
            {import(strSite, u".doc;.htm"_s), strBadFilter, EField::ImportFilter},
            {import(strSite, u"*.doc;"_s), strBadFilter, EField::ImportFilter},
            {import(strSite, u"*.doc;*."_s), strBadFilter, EField::ImportFilter},
            {import(strSite, u"*.doc;*.x"_s)}},
           true);

    Expect(EContentKind::InSiteLink, {{{}, u"对不起，链接地址不能为空！请您选择。"_s, EField::InSiteLink},
                                      {[](CNodeFileParams& p) { p.SiteLinkUrl = u"x"_s; }}});
}

} // namespace

#pragma once

#include <QString>

/// Every text of the course server's side that a person reads.
namespace ServerText {

// Fetching.
inline const QString c_strInvalidUrl = QStringLiteral("对不起，无效的Url（%1）：\n%2");
inline const QString c_strHttpStatus = QStringLiteral("Http %1 错误");
inline const QString c_strGivenUp = QStringLiteral("已取消与服务器的通信。");
inline const QString c_strUrlNotValid = QStringLiteral("地址格式无效");
inline const QString c_strUrlScheme = QStringLiteral("地址未使用可识别的协议");
inline const QString c_strUrlTooLong = QStringLiteral("地址过长");
inline const QString c_strHostUnknown = QStringLiteral("无法解析服务器的名称或地址。");
inline const QString c_strNoConnection = QStringLiteral("无法与服务器建立连接。");
inline const QString c_strTimedOut = QStringLiteral("操作超时。");
inline const QString c_strConnectionLost = QStringLiteral("与服务器的连接意外终止。");
inline const QString c_strBadReply = QStringLiteral("服务器返回了无效的或不可识别的响应。");
inline const QString c_strHeadersTooLong = QStringLiteral("服务器返回的响应头过长。");
inline const QString c_strBodyTooLong = QStringLiteral("服务器返回的内容过长。");
inline const QString c_strNoTransfer = QStringLiteral("对不起，无法载入网络组件，请您重新安装本程序！\n%1");
inline const QString c_strHeaderMissing = QStringLiteral("找不到请求的响应头。");

// What the server's error codes say.
inline const QString c_strProxyError = QStringLiteral("对不起，HTTP代理出错！");
inline const QString c_strBadParameters = QStringLiteral("对不起，页面参数错误！");
inline const QString c_strNoDatabase =
    QStringLiteral("对不起，无法打开服务器端数据库，请您与系统管理员联系！");
inline const QString c_strNoCourse =
    QStringLiteral("对不起，无此课程或此课程未获得授权，请您与系统管理员联系！");
inline const QString c_strCourseInUse = QStringLiteral("对不起，多人无法同时使用本课程！");
inline const QString c_strTooManyOnline = QStringLiteral("对不起，同时在线课程数量过多，请您稍后再试！");
inline const QString c_strServerError = QStringLiteral("对不起，服务器出错，请您与系统管理员联系！");
inline const QString c_strNoCourseList = QStringLiteral("对不起，无法获取课程列表，请您与系统管理员联系！");
inline const QString c_strNoCourseInfo = QStringLiteral("对不起，无法获取课程信息，请您与系统管理员联系！");

// The session of an open course.
inline const QString c_strSessionLost = QStringLiteral("与服务器的连接意外中断，请您重新打开课程。");
inline const QString c_strCheckingPassword = QStringLiteral("正在验证密码...");
inline const QString c_strWrongPassword = QStringLiteral("密码错误，请您重新输入!");
// One character short of the wizard's sentence; both stand as they are.
inline const QString c_strInitialPassword =
    QStringLiteral("您的密码初始密码，我们推荐您更改密码，以保证您课程的安全！\n您要修改密码吗？");
inline const QString c_strInitialPasswordPrompt =
    QStringLiteral("您的密码为初始密码，为了保障您课程的安全，请您修改密码。");
inline const QString c_strChangePrompt = QStringLiteral("请您输入原密码和新密码。");
inline const QString c_strChangingPassword = QStringLiteral("正在修改密码...");
inline const QString c_strPasswordChanged = QStringLiteral("密码已修改，请您牢记！");
inline const QString c_strPasswordNotChanged = QStringLiteral("修改密码失败，请检查原密码输入是否正确！");
inline const QString c_strOldMissing = QStringLiteral("请您填写原密码！");
inline const QString c_strNewMissing = QStringLiteral("请您填写新密码！");
inline const QString c_strConfirmMissing = QStringLiteral("请您填写确认新密码！");
inline const QString c_strConfirmDiffers = QStringLiteral("两次输入密码不一致，请您重新输入！");
inline const QString c_strPasswordTooShort = QStringLiteral("为了保障您的课程的安全，密码不得低于%1位!");
inline const QString c_strValidating = QStringLiteral("正在验证课程...");

// The first page of the new-course wizard.
inline const QString c_strFetchingCourses = QStringLiteral("正在从服务器获取课程列表...");
inline const QString c_strNoCourses = QStringLiteral("对不起，服务器暂无课程！");
inline const QString c_strSelectCourse = QStringLiteral("请您先选择课程!");
inline const QString c_strEnterPassword = QStringLiteral("请您输入密码!");
inline const QString c_strDetails = QStringLiteral("课程编号:%1\r\n课程名称:%2\r\n教师名称:%3");

// The address of the server.
inline const QString c_strAddressMissing = QStringLiteral("请您填写服务器地址！");
inline const QString c_strAddressMalformed =
    QStringLiteral("您输入的服务器地址格式不正确，如有疑问，请您向管理员咨询。");
inline const QString c_strTestingLink = QStringLiteral("正在测试链接...");

// Templates of the server.
inline const QString c_strFetchingTemplates = QStringLiteral("正在从服务器获取模板列表...");
inline const QString c_strFetchingPreview = QStringLiteral("正在从服务器获取预览图...");
inline const QString c_strNoTemplates = QStringLiteral("对不起，服务器暂无模板！");
inline const QString c_strNoTemplateEntry = QStringLiteral("<暂无模板>");
inline const QString c_strNoPreview = QStringLiteral("获取预览图失败！");
inline const QString c_strSelectTemplate = QStringLiteral("请您选择一个模板！");
inline const QString c_strTemplateExists = QStringLiteral("%1已经存在，是否继续更新？");

// Titles and labels of the dialogs.
inline const QString c_strTitleNotice = QStringLiteral("提示");
inline const QString c_strTitleWarning = QStringLiteral("警告");
inline const QString c_strTitleError = QStringLiteral("错误");
inline const QString c_strOk = QStringLiteral("确定");
inline const QString c_strCancel = QStringLiteral("取消");
inline const QString c_strPasswordTitle = QStringLiteral("验证密码");
inline const QString c_strPasswordPrompt = QStringLiteral("请您输入课程密码，如有疑问，请向管理员咨询。");
inline const QString c_strCourseLabel = QStringLiteral("课程名称(&N)：");
inline const QString c_strTeacherLabel = QStringLiteral("教师名称(&T)：");
inline const QString c_strPasswordLabel = QStringLiteral("密码(&P)：");
inline const QString c_strChangeTitle = QStringLiteral("修改密码");
inline const QString c_strOldLabel = QStringLiteral("原密码(&O)：");
inline const QString c_strNewLabel = QStringLiteral("新密码(&N)：");
inline const QString c_strConfirmLabel = QStringLiteral("确认新密码(&C)：");
inline const QString c_strAddressTitle = QStringLiteral("设置服务器地址");
inline const QString c_strAddressLabel = QStringLiteral("服务器地址(&S)：");
inline const QString c_strDownloadTitle = QStringLiteral("模板下载");
inline const QString c_strTemplateList = QStringLiteral("模板列表，请选择");
inline const QString c_strPreview = QStringLiteral("预览");

} // namespace ServerText

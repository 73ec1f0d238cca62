#pragma once

#include <QString>

/// What recorded lectures say to people.
namespace VideoText {

using namespace Qt::StringLiterals;

// Recording.
inline const QString c_strProjectNotWritten = u"设定视频课件信息失败！"_s;
inline const QString c_strNoKey = u"创建视频课件文件失败！"_s;
inline const QString c_strNoRecorder = u"启动视频录制工具失败！"_s;
inline const QString c_strRecorderRuns = u"正在录制视频课件，请在录制窗口中操作..."_s;

// The script file.
inline const QString c_strNotOpened = u"对不起，无法打开视频文件！"_s;
inline const QString c_strBadFormat = u"对不起，错误的文件格式！"_s;

// The preview.
inline const QString c_strScriptFailureTitle = u"错误信息"_s;
inline const QString c_strScriptsNotLoaded = u"载入脚本出错！"_s;
inline const QString c_strOutlineNotLoaded = u"载入大纲出错！"_s;
inline const QString c_strNoFilmNamed = u"没有找到视频文件!"_s;
inline const QString c_strFirstStatus = u"0000：00001"_s;
inline const QString c_strOutline = u"授课纲要"_s;
inline const QString c_strPlay = u"播放(&P)"_s;
inline const QString c_strPause = u"暂停(&U)"_s;
inline const QString c_strStop = u"停止(&S)"_s;
inline const QString c_strFullScreen = u"全屏(&F)"_s;
/// What a reader of the screen says of the parts without a text of their own.
inline const QString c_strFilmName = u"授课录像"_s;
inline const QString c_strStatusName = u"播放状态"_s;
inline const QString c_strSlidesName = u"讲稿"_s;

// Films.
inline const QString c_strNoFilm = u"录制的视频文件已损坏，无法读取。"_s;
inline const QString c_strFilmNotWritten = u"无法写入视频文件，请您检查磁盘空间后重试。"_s;

} // namespace VideoText

#pragma once

#include <QString>

/// Every text for people of this floor.
namespace UiTexts {

inline const QString c_strOk = QStringLiteral("确定");
inline const QString c_strCancel = QStringLiteral("取消");
inline const QString c_strYes = QStringLiteral("是(&Y)");
inline const QString c_strNo = QStringLiteral("否(&N)");
inline const QString c_strRetry = QStringLiteral("重试(&R)");
inline const QString c_strQuestionTitle = QStringLiteral("提示");
inline const QString c_strForAll = QStringLiteral("以后都这样处理，不再询问(&A)");

inline const QString c_strOpen = QStringLiteral("打开(&O)");
inline const QString c_strSave = QStringLiteral("保存(&S)");
inline const QString c_strChoose = QStringLiteral("选择(&S)");
inline const QString c_strLookIn = QStringLiteral("查找范围：");
inline const QString c_strFileName = QStringLiteral("文件名(&N)：");
inline const QString c_strFolderName = QStringLiteral("文件夹(&N)：");
inline const QString c_strFileType = QStringLiteral("文件类型：");
inline const QString c_strAllFiles = QStringLiteral("所有文件(*.*)");

inline const QString c_strCopy = QStringLiteral("拷贝(&C)");
inline const QString c_strSelectAll = QStringLiteral("全选(&A)");

inline const QString c_strLinkTitle = QStringLiteral("超级链接");
inline const QString c_strLinkPrompt = QStringLiteral("请您输入链接的地址");

inline const QString c_strNoEngine =
    QStringLiteral("浏览器组件无法加载，不能显示和编辑网页。\n请您重新安装本程序后再试。");
inline const QString c_strPageMissing = QStringLiteral("对不起，找不到要显示的文件：");
inline const QString c_strPageFailed = QStringLiteral("对不起，无法显示该页面：");
inline const QString c_strAddressNotShown =
    QStringLiteral("本程序不能显示这种地址，您可以用其他程序打开它：");
inline const QString c_strPageTimeOut = QStringLiteral("对不起，打开该页面超时：");
inline const QString c_strPageOpening = QStringLiteral("正在打开网页，请稍候：");
inline const QString c_strNoNetwork = QStringLiteral("该页面位于网络上，现在不允许访问网络：");

// The player, and what stands in its place for a file that nothing here shows.
inline const QString c_strPlay = QStringLiteral("播放(&P)");
inline const QString c_strPause = QStringLiteral("暂停(&P)");
inline const QString c_strPlaceInMedia = QStringLiteral("播放位置");
inline const QString c_strVolume = QStringLiteral("音量(&L)：");
inline const QString c_strFillScreen = QStringLiteral("全屏(&U)");
inline const QString c_strFillScreenKeys = QStringLiteral("全屏播放（F11），按 Esc 退出");
inline const QString c_strSaveCopy = QStringLiteral("另存为(&A)...");
inline const QString c_strOpenInProgram = QStringLiteral("用其他程序打开(&O)");
inline const QString c_strMediaOpening = QStringLiteral("正在打开...");
inline const QString c_strMediaReady = QStringLiteral("就绪");
inline const QString c_strMediaPlaying = QStringLiteral("正在播放");
inline const QString c_strMediaPaused = QStringLiteral("已暂停");
inline const QString c_strMediaStopped = QStringLiteral("已停止");
inline const QString c_strMediaNotReadable =
    QStringLiteral("对不起，这个文件不存在、是空的，或者不允许读取。");
inline const QString c_strMediaDamaged =
    QStringLiteral("对不起，无法播放这个文件：文件可能已经损坏，或者使用了不支持的格式。");
inline const QString c_strMediaNoSound =
    QStringLiteral("对不起，没有找到声音设备，无法播放这个声音文件。\n请您连接耳机或音箱后再试。");
inline const QString c_strNoPlayer =
    QStringLiteral("播放组件无法加载，不能播放视频和声音。\n请您重新安装本程序后再试。");
inline const QString c_strKindOfFile = QStringLiteral("这是 %1。");
inline const QString c_strKindUnknown = QStringLiteral("这是一个文件。");
inline const QString c_strNotShownHere = QStringLiteral("本程序不能显示这种文件，您可以用其他程序打开它。");

// What media are called, in the player and on the cards that stand in pages.
inline const QString c_strWindowsVideo = QStringLiteral("Windows Media 视频");
inline const QString c_strWindowsSound = QStringLiteral("Windows Media 音频");
inline const QString c_strWindowsList = QStringLiteral("Windows Media 播放列表");
inline const QString c_strAviVideo = QStringLiteral("AVI 视频");
inline const QString c_strMpegVideo = QStringLiteral("MPEG 视频");
inline const QString c_strMpegSound = QStringLiteral("MPEG 音频");
inline const QString c_strRealVideo = QStringLiteral("RealMedia 视频");
inline const QString c_strRealSound = QStringLiteral("RealMedia 音频");
inline const QString c_strRealList = QStringLiteral("RealMedia 播放列表");
inline const QString c_strQuickTimeVideo = QStringLiteral("QuickTime 视频");
inline const QString c_strFlashVideo = QStringLiteral("Flash 视频");
inline const QString c_strFlashAnimation = QStringLiteral("Flash 动画");
inline const QString c_strShockwave = QStringLiteral("Shockwave 动画");
inline const QString c_strMatroskaVideo = QStringLiteral("Matroska 视频");
inline const QString c_strPhoneVideo = QStringLiteral("手机视频");
inline const QString c_strApeSound = QStringLiteral("APE 音频");
inline const QString c_strAmrSound = QStringLiteral("AMR 录音");
inline const QString c_strMidi = QStringLiteral("MIDI 音乐");
inline const QString c_strMp4Video = QStringLiteral("MP4 视频");
inline const QString c_strAacSound = QStringLiteral("AAC 音频");
inline const QString c_strMp3Sound = QStringLiteral("MP3 音频");
inline const QString c_strWavSound = QStringLiteral("WAV 音频");
inline const QString c_strOggSound = QStringLiteral("OGG 音频");
inline const QString c_strOggVideo = QStringLiteral("OGG 视频");
inline const QString c_strWebmVideo = QStringLiteral("WebM 视频");
inline const QString c_strFlacSound = QStringLiteral("FLAC 音频");
inline const QString c_strAnyVideo = QStringLiteral("视频");
inline const QString c_strAnySound = QStringLiteral("声音");
inline const QString c_strAnyPlugIn = QStringLiteral("插件内容");
inline const QString c_strAnyFile = QStringLiteral("文件");
inline const QString c_strApplet = QStringLiteral("Java 小程序");
inline const QString c_strCardOpens = QStringLiteral("%1，点击打开");
inline const QString c_strCardOpensFile = QStringLiteral("点击打开 %1");
inline const QString c_strCardNamed = QStringLiteral("%1：%2");
inline const QString c_strCardWithoutFile = QStringLiteral("%1（没有指定文件）");
inline const QString c_strCardNotOpened = QStringLiteral("%1，地址无法打开");

} // namespace UiTexts

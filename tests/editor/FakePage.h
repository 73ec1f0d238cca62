#pragma once

#include "editor/PageSave.h"

/// A page whose text and references a test sets by hand.
class CFakePage : public ILivePage {
public:
    QString strHtml, strUrl;
    QStringList Images, Embeds, Anchors;
    QString strFailing;
    bool bInSource = false;

    bool IsInSource() const override { return bInSource; }
    bool GetCurrentHtml(QString& strOut) override { return Give(u"html", strOut, strHtml); }
    bool SetCurrentHtml(const QString& strNew) override { return Give(u"set", strHtml, strNew); }
    bool GetAllImageSrc(QStringList& list) override { return Give(u"images", list, Images); }
    bool GetAllEmbededSrc(QStringList& list) override { return Give(u"embeds", list, Embeds); }
    bool GetAllAnchorHref(QStringList& list) override { return Give(u"anchors", list, Anchors); }
    bool GetURL(QString& strOut) override { return Give(u"url", strOut, strUrl); }

private:
    template <class T>
    bool Give(QStringView strWhat, T& out, const T& value) {
        if (strFailing == strWhat)
            return false;
        out = value;
        return true;
    }
};

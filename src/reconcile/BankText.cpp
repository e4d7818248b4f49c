#include "reconcile/BankText.h"

#include "reconcile/BankFeed.h"

#include <vector>

namespace pelkor::reconcile {

namespace {

enum class CharClass { Lat, Heb, Num, ToRtl, ToLtr, Other };

// The right-to-left and left-to-right marks of the old Hebrew code page
// (254 and 253) are these two characters once the text is Unicode.
constexpr char16_t rtlMark = 0x200F;
constexpr char16_t ltrMark = 0x200E;

CharClass classOf(QChar ch)
{
    const char16_t c = ch.unicode();
    if ((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'\t')
        return CharClass::Lat;
    if (c >= u'\u05D0' && c <= u'\u05EA')
        return CharClass::Heb;
    if ((c >= u'0' && c <= u'9') || c == u'.' || c == u',' || c == u'#' || c == u'$' || c == u'%' ||
        c == u':' || c == u'/' || c == u'(' || c == u')')
        return CharClass::Num;
    if (c == rtlMark)
        return CharClass::ToRtl;
    if (c == ltrMark)
        return CharClass::ToLtr;
    return CharClass::Other;
}

struct Run {
    CharClass cls;
    QString text;
    bool rtl = false;
};

QString mirrorBrackets(QString s)
{
    for (QChar& ch : s) {
        if (ch == u'(')
            ch = u')';
        else if (ch == u')')
            ch = u'(';
    }
    return s;
}

// Runs of one class; a direction mark opens a run of its own that keeps no
// text.
std::vector<Run> cutIntoRuns(const QString& s)
{
    std::vector<Run> runs;
    for (QChar ch : s) {
        const CharClass cls = classOf(ch);
        const bool isMark = cls == CharClass::ToRtl || cls == CharClass::ToLtr;
        if (isMark || runs.empty() || runs.back().cls != cls ||
            runs.back().cls == CharClass::ToRtl || runs.back().cls == CharClass::ToLtr)
            runs.push_back(Run{cls, {}});
        if (!isMark)
            runs.back().text += ch;
    }
    return runs;
}

// The direction of each run. Digits follow the direction in force; blanks
// and other signs between two Hebrew runs are Hebrew (pending until the
// next run tells), and before a Latin run they are not.
void decideDirections(std::vector<Run>& runs)
{
    bool current = false, pending = false;
    for (size_t i = 0; i < runs.size(); ++i) {
        Run& r = runs[i];
        Run* before = i > 0 ? &runs[i - 1] : nullptr;
        switch (r.cls) {
        case CharClass::Lat:
        case CharClass::ToLtr:
            r.rtl = false;
            current = false;
            if (pending) {
                pending = false;
                if (before)
                    before->rtl = false;
            }
            break;
        case CharClass::Heb:
        case CharClass::ToRtl:
            r.rtl = true;
            current = true;
            if (pending && before)
                before->rtl = true;
            break;
        case CharClass::Num:
            r.rtl = current;
            if (pending && before)
                before->rtl = true;
            break;
        case CharClass::Other:
            r.rtl = false;
            if (current)
                pending = true;
            break;
        }
    }
    if (pending && !runs.empty())
        runs.back().rtl = false;
}

} // namespace

QString splitStr(const QString& s)
{
    std::vector<Run> runs = cutIntoRuns(s);
    decideDirections(runs);
    QString joined;
    joined.reserve(s.size());
    for (auto it = runs.rbegin(); it != runs.rend(); ++it)
        joined += it->rtl ? mirrorBrackets(it->text) : it->text;
    return mirrorBrackets(joined);
}

QString formatText(const QString& s, int iBank, bool isSimulate)
{
    if (!isSimulate && textArrivesInScreenOrder(iBank))
        return splitStr(s);
    return s;
}

} // namespace pelkor::reconcile

#include "support/NaughtyTexts.h"

using namespace Qt::StringLiterals;

namespace quilmora::test {

const QList<NaughtyText> &naughtyTexts()
{
    static const QList<NaughtyText> texts{
        {"control characters", u"a\u0001\u0002\u0007\u0008\u001b[31mb\u007f\u0085c"_s},
        {"a NUL", QString::fromUtf16(u"ab\0cd", 5), u"ab\ufffdcd"_s},
        {"half a surrogate pair, the first", QString{u"a"_s + QChar{0xd83d} + u'b'}, u"a?b"_s},
        {"half a surrogate pair, the second", QString{u"a"_s + QChar{0xde00} + u'b'}, u"a?b"_s},
        {"bidirectional controls", u"\u202e\u2066abc\u2069\u202c\u200f\u061c"_s},
        {"a byte order mark and what has no width", u"\ufeffa\u200b\u200d\u2060b"_s},
        {"what is no character", u"a\ufffe\uffffb\ufdd0c"_s, u"a\ufffe\uffffb\ufffdc"_s},
        {"combining sequences", QString{u"e"_s + QString{300, QChar{0x0301}} + u"g͎̼͙̏͌"_s}},
        {"emoji of many parts", u"👩‍👩‍👧‍👦🏳️‍🌈👍🏽🇨🇳"_s},
        {"quotes and a statement of SQL", u"'); DROP TABLE history; --\"`;' OR '1'='1"_s},
        {"HTML", u"<script>alert(1)</script><img src='file:///etc/passwd'>&amp;&lt;<b>"_s},
        {"format strings", u"%s%n%d%x%1%2 {} {0} ${HOME} $(id) `id`"_s},
        {"JSON", u"\"}],\"error\":{\"message\":\"\\u0000\\\\\"}"_s},
        {"paths", u"../../../../etc/passwd /dev/null C:\\con.png ~root"_s},
        {"right to left", u"العربية עברית"_s},
    };
    return texts;
}

} // namespace quilmora::test

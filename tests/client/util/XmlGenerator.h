// SPDX-License-Identifier: MIT
// Well-formed XML documents, the same for the same seed and compiler.
//
// Left out, because the records' reader and XML differ there on purpose: line breaks and tabs
// that stand in a value as they are (XML makes blanks of them), references longer than seven
// characters (kept as written), "<" or ">" inside a document type (it ends at its first ">"),
// characters that XML does not allow.
#pragma once

#include "platform/text/Text.h"

#include <random>

class XmlGenerator {
public:
    explicit XmlGenerator(unsigned seed) : m_random(seed) {}

    CString Document() {
        CString text = One({u"", u"<?xml version=\"1.0\"?>\n", u"<?xml version='1.0'?>"});
        text += Misc();
        const CString root = Name();
        text += One({u"", u"<!DOCTYPE " + root + u">", u"<!DOCTYPE " + root + u" SYSTEM 'a\"b'>"});
        return text + Misc() + Element(root, 0) + Misc();
    }

private:
    std::size_t Below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }
    CString One(std::initializer_list<CString> choices) {
        return *(choices.begin() + Below(choices.size()));
    }

    CString Name() {
        CString name = One({u"a", u"Nci", u"_", u"x:y", u"č", u"水", u"\U00010348"});
        for (std::size_t i = Below(3); i > 0; --i)
            name += One({u"b", u"-", u".", u"7", u"Ž", u":"});
        return name;
    }
    CString Blanks() { return One({u" ", u"  ", u"\n", u"\t", u"\r\n "}); }
    CString MaybeBlanks() { return Below(2) ? CString() : Blanks(); }

    CString Reference() {
        return One({u"&lt;", u"&amp;", u"&gt;", u"&apos;", u"&quot;", u"&#65;", u"&#x41;", u"&#10;",
                    u"&#x9;", u"&#269;", u"&#x10d;", u"&#x10D;", u"&#00065;", u"&#xFFFD;",
                    u"&#65536;", u"&#66376;", u"&#99999;"});
    }
    // Of what may stand in values and between tags alike.
    CString Piece() {
        return Below(3) == 0 ? Reference()
                             : One({u"a", u"Z", u"7", u" ", u"  ", u">", u"/>", u"]]", u"=", u"?",
                                    u"#65;", u"--", u"č", u"Ω", u"水", u"\u00A0", u"\uFFFD",
                                    u"\U00010348", u"\U0001F600"});
    }
    CString Value() {
        const CString quote = One({u"\"", u"'"});
        CString value;
        for (std::size_t i = Below(8); i > 0; --i)
            value += Below(6) == 0 ? CString(quote == u"'" ? u"\"" : u"'") : Piece();
        return quote + value + quote;
    }
    // Every name once: a number is part of it.
    CString Attributes() {
        CString text;
        const std::size_t count = Below(5);
        for (std::size_t i = 0; i < count; ++i)
            text += Blanks() + Name() + static_cast<char16_t>(u'0' + i) + MaybeBlanks() + u"=" +
                    MaybeBlanks() + Value();
        return text + MaybeBlanks();
    }

    CString Comment() { return One({u"<!---->", u"<!-- <a b='1'> > - -->", u"<!--</a>-č-->"}); }
    CString Instruction() { return One({u"<?pi?>", u"<?pi <a b='1'/> > ? ?>", u"<?p-1 &lt;?>"}); }
    CString Section() {
        return One({u"<![CDATA[]]>", u"<![CDATA[<a></b>&amp;]]]>", u"<![CDATA[]>\"']]>"});
    }
    CString Misc() { return One({u"", u"\n", Comment(), Instruction()}); }

    CString Content(std::size_t depth) {
        CString text;
        for (std::size_t i = Below(depth < 6 ? 6 : 1); i > 0; --i)
            text += Below(2) ? Element(Name(), depth + 1)
                             : One({Comment(), Instruction(), Section(), Reference(), u" \n\t"});
        return text;
    }
    CString Element(const CString& name, std::size_t depth) {
        const CString start = u"<" + name + Attributes();
        if (Below(3) == 0)
            return start + u"/>";
        return start + u">" + Content(depth) + u"</" + name + MaybeBlanks() + u">";
    }

    std::mt19937 m_random;
};

// The words as they are written, and what their markup becomes.
#include <gmock/gmock.h>

#include "manual/Markup.h"
#include "manual/Words.h"

namespace manual {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ParseWords, TakesEveryPartOfAForm) {
  Errata errata;
  const Words words =
      ParseWords("CtlHPF",
                 "title: Highpass\r\ngroup: panels\nfor:\nTakes away rumble:\nwind, too.\n\nMore.\n"
                 "when:\nFirst.\ncontrols:\nsldrCutoff: The edge.\n  Note: it may be 0.\nbtnOK: Closes.\n"
                 "keys:\nCtrl+Z: Takes back.\nnotes:\nNone.\n",
                 errata);
  EXPECT_THAT(errata, IsEmpty());
  EXPECT_EQ(words.title, "Highpass");
  EXPECT_EQ(words.group, "panels");
  EXPECT_EQ(words.purpose, "Takes away rumble:\nwind, too.\n\nMore.\n");
  EXPECT_EQ(words.notes, "None.\n");
  ASSERT_NE(words.Of("sldrCutoff"), nullptr);
  EXPECT_EQ(*words.Of("sldrCutoff"), "The edge. Note: it may be 0.");
  EXPECT_EQ(words.Of("sldr"), nullptr);
  EXPECT_EQ(*words.OfKey("Ctrl+Z"), "Takes back.");
}

TEST(ParseWords, TellsWhatItCannotRead) {
  const auto complaints = [](const std::string& content) {
    Errata errata;
    ParseWords("X", content, errata);
    return errata;
  };
  EXPECT_THAT(complaints("lost\n"), ElementsAre(HasSubstr("X.txt:1")));
  EXPECT_THAT(complaints("for:\nOne.\nwenn:\nTwo.\n"), ElementsAre(HasSubstr("\"wenn\" is no key")));
  EXPECT_THAT(complaints("for:\nOne.\nfor:\nTwo.\n"), ElementsAre(HasSubstr("stands twice")));
  EXPECT_THAT(complaints("controls:\nbtnA: One.\nbtnA: Two.\n"), ElementsAre(HasSubstr("stands twice")));
  EXPECT_THAT(complaints("controls:\nbtnA:\n"), ElementsAre(HasSubstr("nothing is said of btnA")));
  EXPECT_THAT(complaints("controls:\n  lost\n"), ElementsAre(HasSubstr("no name")));
}

struct Marked {
  Errata errata;
  Markup markup{
      .find = [](const std::string& page) -> std::optional<Target> {
        if (page != "CtlHPF") return {};
        return Target{"CtlHPF.html", "Highpass"};
      },
      .captionOf = [](const std::string& form, const std::string& control) -> std::optional<std::string> {
        if (form + control != "MbtnA") return {};
        return "Press & Go";
      },
      .errata = errata,
      .page = "P"};
};

TEST(Markup, MakesLinksCaptionsAndEmphasis) {
  Marked marked;
  EXPECT_EQ(marked.markup.Line("a <b> & [[CtlHPF]], [[CtlHPF|that]], *so [M.btnA]*, `x*[[y]]*`, 3 * 4 [1]"),
            "a &lt;b&gt; &amp; <a href=\"CtlHPF.html\">Highpass</a>, <a href=\"CtlHPF.html\">that</a>, "
            "<em>so <b>Press &amp; Go</b></em>, <code>x*[[y]]*</code>, 3 * 4 [1]");
  EXPECT_THAT(marked.errata, IsEmpty());
  marked.markup.Line("[[Gone]] [M.btnGone]");
  EXPECT_THAT(marked.errata, ElementsAre(HasSubstr("[[Gone]]"), HasSubstr("[M.btnGone]")));
}

TEST(Markup, MakesBlocks) {
  const Marked marked;
  EXPECT_EQ(marked.markup.Blocks(
                "One\nline.\n\nTwo.\n## Head\nText.\n- a\n  goes on\n- b\n\n1. x\n12. y\n\n    code <1>\n"),
            "<p>One line.</p>\n<p>Two.</p>\n<h2>Head</h2>\n<p>Text.</p>\n<ul>\n<li>a goes "
            "on</li>\n<li>b</li>\n</ul>\n"
            "<ol>\n<li>x</li>\n<li>y</li>\n</ol>\n<pre>code &lt;1&gt;</pre>\n");
}

}  // namespace
}  // namespace manual

"""What the tests of documents and house read of the code: its files, their includes and their identifiers."""
import re

PLACES = ("src", "tests", "fuzz", "bench")

# Comments, and then literals, in the order in which they may hide one another.
COMMENT_OR_LITERAL = re.compile(r"""
    (?P<comment> //[^\n]* | /\*.*?\*/ )
  | R"(?P<mark>\w*)\(.*?\)(?P=mark)"
  | "(?:\\.|[^"\\\n])*"
  | (?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'
""", re.VERBOSE | re.DOTALL)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.MULTILINE)


def files(source, places=PLACES):
    return sorted(path for place in places for path in (source / place).rglob("*") if path.suffix in (".h", ".cpp"))


def own_includes(path):
    """The files of the house that the file includes, as it names them."""
    return [name for quote, name in INCLUDE.findall(path.read_text()) if quote == '"']


def identifiers(path):
    """Its names, apart from comments, literals and the lines of includes."""
    text = COMMENT_OR_LITERAL.sub(" ", INCLUDE.sub("", path.read_text()))
    return set(re.findall(r"(?<!\w)[A-Za-z_]\w*", text))


def quoted_words(path):
    """The words that stand in its literals."""
    literals = (match[0] for match in COMMENT_OR_LITERAL.finditer(path.read_text()) if not match["comment"])
    return set(re.findall(r"\w+", " ".join(literals)))

"""The mutants of a C++ source: small faults, each made at one place, that a good test would notice.

Used by mutate.py. Works on the text, not on a syntax tree: comments and literals are masked, and clang-format's own layout tells
operators from template brackets (blanks stand around operators only). A mutant that is no C++ is found by the compiler."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    name: str       # the file, below the repository's root
    line: int       # from 1
    operator: str   # which kind of fault
    begin: int      # what is replaced, as places in the text
    end: int
    new: str

    def apply(self, text):
        return text[:self.begin] + self.new + text[self.end:]

    def describe(self, text):
        old = " ".join(text[self.begin:self.end].split())
        new = " ".join(self.new.split())
        return f"{self.name}:{self.line}: {self.operator}: {old[:70]} -> {new[:70]}"


MASKED = re.compile(r'//[^\n]*|/\*.*?\*/|R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])\'(?:\\.|[^\'\\\n])+\'', re.DOTALL)


def masked(text):
    """The text with comments, literals and preprocessor lines blanked, each place where it was."""
    def blank(found):
        piece = found.group()
        # A literal keeps its quotes, so that it still is an argument of a call.
        if piece[0] in "\"'R":
            return '"' + re.sub(r"[^\n]", "_", piece[1:-1]) + '"'
        return re.sub(r"[^\n]", " ", piece)
    text = MASKED.sub(blank, text)
    return re.sub(r"^[ \t]*#[^\n]*", lambda found: " " * len(found.group()), text, flags=re.MULTILINE)


def closing(text, opening):
    """The place of the bracket that closes the one at `opening`; -1 where there is none."""
    depth = 0
    for place in range(opening, len(text)):
        if text[place] in "([{":
            depth += 1
        elif text[place] in ")]}":
            depth -= 1
            if depth == 0:
                return place
    return -1


# A blank on both sides: an operator between operands, never a bracket of a template.
TWINS = {"==": "!=", "!=": "==", "&&": "||", "||": "&&", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "+": "-", "-": "+"}
KIND_OF_TWIN = {"==": "condition", "!=": "condition", "&&": "condition", "||": "condition", "<": "boundary", "<=": "boundary",
                ">": "boundary", ">=": "boundary", "+": "constant", "-": "constant"}
OPERATOR = re.compile(r"(?<= )(==|!=|&&|\|\||<=|>=|<|>|\+|-)(?=[ \n])")
NUMBER = re.compile(r"(?<![\w.'])(\d[\d']*(?:\.\d+)?)(?=[^\w.'])")
TRUTH = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(?:if|while) (\()")
STATEMENT = re.compile(r"(?<=\n)([ ]+)((?!return\b|delete\b|using\b|static_assert\b|case\b|else\b|if\b|for\b|while\b|switch\b|const\b)"
                       r"(?:throw )?[\w:.*>\-\[\]]+(?:<[\w:]+>)?)(\()")
ASSIGNMENT = re.compile(r"(?<=\n)[ ]+[\w.>\-\[\]()]+ (?:=|\+=|-=) [^\n;{}]+;(?=\n)")
CALL = re.compile(r"\w(\()")
# Whatever the order of their arguments, the same; and what only saves time.
SYMMETRIC = re.compile(r"\b(?:min|max)(?:<\w+>)?\($")
RESERVES = re.compile(r"\breserve$")
SIMPLE = re.compile(r"^[\w.:>\-\"\[\]]+(?:\([\w.]*\))?$")


def conditions(code):
    for found in CONDITION.finditer(code):
        begin = found.start(1)
        end = closing(code, begin)
        if end > 0 and ";" not in code[begin:end] and " = " not in code[begin:end]:
            yield "condition", begin + 1, end, lambda old: f"!({old})"


def statements(code):
    for found in STATEMENT.finditer(code):
        end = closing(code, found.start(3))
        while code[end + 1:end + 2] in ("(", "."):
            opening = code.find("(", end + 1)
            end = closing(code, opening) if opening > 0 else -1
            if end < 0:
                break
        if end > 0 and code[end + 1:end + 2] == ";" and not RESERVES.search(found.group(2)):
            yield "statement removed", found.start(2), end + 1, lambda old: ""
    for found in ASSIGNMENT.finditer(code):
        begin = found.start() + len(found.group()) - len(found.group().lstrip())
        yield "statement removed", begin, found.end() - 1, lambda old: ""


def swapped_arguments(code):
    for found in CALL.finditer(code):
        begin = found.start(1)
        end = closing(code, begin)
        if end < 0 or SYMMETRIC.search(code[max(0, begin - 20):begin + 1]):
            continue
        parts = code[begin + 1:end].split(", ")
        if len(parts) == 2 and all(SIMPLE.match(part) for part in parts) and parts[0] != parts[1]:
            yield "arguments swapped", begin + 1, end, lambda old: ", ".join(reversed(old.split(", ", 1)))


def single_signs(code):
    for found in OPERATOR.finditer(code):
        sign = found.group(1)
        yield KIND_OF_TWIN[sign], found.start(1), found.end(1), lambda old: TWINS[old]
    for found in NUMBER.finditer(code):
        yield "constant", found.start(1), found.end(1), lambda old: f"({old} + 1)"
    for found in TRUTH.finditer(code):
        yield "constant", found.start(1), found.end(1), lambda old: "false" if old == "true" else "true"


def mutants_of(name, text):
    """All mutants of a source, in the order of their places."""
    code = masked(text)
    found = []
    for operators in (conditions, statements, swapped_arguments, single_signs):
        for operator, begin, end, change in operators(code):
            found.append(Mutant(name, text.count("\n", 0, begin) + 1, operator, begin, end, change(text[begin:end])))
    return sorted(found, key=lambda mutant: (mutant.begin, mutant.end, mutant.operator))

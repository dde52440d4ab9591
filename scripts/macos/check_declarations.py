#!/usr/bin/env python3
"""Compares the declarations in tests/macos-declarations with ones that others generated from Apple's SDK.

Fails for a class, base class, selector, property, C function, enumerator, value of an enumerator, or constant that the
SDK does not have, for another number or kind of parameters, results and values of properties, and for a class member
that belongs to the objects, or the reverse. The SDK's declarations do not tell the sizes of numbers, what a pointer points
to, parameters of blocks, or which of the types without a class an object has; these, and the values of constants that are
no enumerators there, are not compared.

usage: check_declarations.py SDK DECLARATIONS <AST
SDK is the folder with the generated declarations (*.d.ts), AST what clang prints for the headers below DECLARATIONS with
-Xclang -ast-dump=json.
"""

import json
import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

FRAMEWORKS = ["AppKit", "CoreFoundation", "CoreServices", "CoreText", "Foundation", "IOKit", "ServiceManagement"]
# Enumerators of enumerations that C does not name, where the name does not tell which one it is.
RENAMED = {
    "kCFNumberFloat64Type": ("CFNumberType", "Float64"),
    "kCFNumberSInt64Type": ("CFNumberType", "SInt64"),
    "kCFStringEncodingUTF8": ("CFStringBuiltInEncodings", "UTF8"),
}
# In the SDK itself these are macros or inline functions, which the generated declarations leave out.
ARROW = "\N{RIGHTWARDS ARROW}"
SDK_KINDS = {
    "string": "text",
    "NSString": "text",
    "interop.Enum": "number",
    "bigint": "number",
    "interop.Object": "object",
    "NSObject": "object",
    "interop.Pointer": "pointer",
    "interop.PointerConvertible": "pointer",
    "NSRect": "CGRect",
    "NSSize": "CGSize",
    "NSPoint": "CGPoint",
}
DECLARED_KINDS = {
    "void": "void",
    "BOOL": "boolean",
    "NSString*": "text",
    "SEL": "text",
    "id": "object",
    "instancetype": "object",
    "NSObject*": "object",
    "ObjectType": "ObjectType",
}
STRUCTURES = {"NSRect": "CGRect", "NSSize": "CGSize", "NSPoint": "CGPoint", "CFRange": "CFRange"}
LEFT_OUT = {"CFBridgingRelease", "CFBridgingRetain", "NSMakeRect", "NSMakeSize"}


def parameter_types(text: str) -> list[str]:
    """The types in a list of parameters, without the `this` of a constructor."""
    depth = 0
    parameters = [""]
    for character in text.replace("=>", ARROW):
        depth += (character in "(<[{") - (character in ")>]}")
        if character == "," and depth == 0:
            parameters.append("")
        else:
            parameters[-1] += character
    pairs = [each.partition(":") for each in parameters]
    return [type_.strip() for name, _, type_ in pairs if name.strip() not in ("", "this")]


def sdk_kind(text: str) -> str:
    """What a type of the SDK is: void, number, boolean, text, block, object, pointer, or the name of a class or structure."""
    text = text.replace("=>", ARROW)
    if ARROW in text:
        return "block"
    text = re.sub(r"<.*>", "", text.split("|")[0]).strip(" ;()")
    if text.endswith("[]"):
        return "NSArray"
    return SDK_KINDS.get(text, text)


def declared_kind(node_type: dict) -> str:
    """The same for a type that clang prints."""
    written = re.sub(r"\b(_Nullable|_Nonnull|const|__kindof|__strong|__weak|__unsafe_unretained|struct)\b", "", node_type["qualType"])
    written = re.sub(r"<.*>", "", written).replace(" ", "")
    if written in DECLARED_KINDS:
        return DECLARED_KINDS[written]
    if "(^)" in written:
        return "block"
    if re.fullmatch(r"(NS|SM)\w+\*", written):
        return written[:-1]
    if re.fullmatch(r"CF\w+Ref|CFMutableDictionaryRef", written):
        return "object"
    if written in STRUCTURES:
        return STRUCTURES[written]
    full = node_type.get("desugaredQualType", node_type["qualType"])
    if re.match(r"NSString \*", full):
        return "text"
    return "pointer" if "*" in full or "[" in full else "number"


def agree(declared: str, of_sdk: str) -> bool:
    """Whether both may be the same type. Without a class in one of them, the other may be any object."""
    anonymous = {"object", "pointer", "unknown"}
    if declared in anonymous or of_sdk in anonymous:
        return not {declared, of_sdk} & {"number", "boolean", "void"} or of_sdk == "unknown"
    return declared == of_sdk


def closing(text: str) -> int:
    """Where the parenthesis closes with which the text begins."""
    depth = 0
    for position, character in enumerate(text):
        depth += (character == "(") - (character == ")")
        if depth == 0:
            return position
    raise ValueError(f"no end: {text}")


@dataclass
class Signature:
    """The kinds of a function's parameters and result."""

    parameters: list[str]
    result: str

    def agrees(self, other: "Signature") -> bool:
        """Whether both may be one function's. `self` is the declared one."""
        return (
            len(self.parameters) == len(other.parameters)
            and all(map(agree, self.parameters, other.parameters))
            and agree(self.result, other.result)
        )

    def __str__(self) -> str:
        return f"({', '.join(self.parameters)}) -> {self.result}"


def sdk_signature(parameters: str, result: str) -> Signature:
    return Signature([sdk_kind(each) for each in parameter_types(parameters)], sdk_kind(result))


def declared_signature(node: dict, result: dict) -> Signature:
    parameters = [each["type"] for each in node.get("inner", []) if each["kind"] == "ParmVarDecl"]
    return Signature([declared_kind(each) for each in parameters], declared_kind(result))


@dataclass
class Type:
    """A class or protocol of the SDK."""

    bases: list[str]
    # Both by whether they are of the class, and by name; properties with whether they can be set.
    methods: dict[tuple[bool, str], list[Signature]] = field(default_factory=dict)
    properties: dict[tuple[bool, str], tuple[bool, str]] = field(default_factory=dict)


class SDK:
    """The declarations that were generated from Apple's SDK."""

    def __init__(self, folder: Path) -> None:
        self.types: dict[str, Type] = {}
        self.enumerations: dict[str, dict[str, int]] = {}
        self.constants: set[str] = set()
        self.functions: dict[str, Signature] = {}
        for framework in [*FRAMEWORKS, "Runtime"]:
            self._read((folder / f"{framework}.d.ts").read_text())

    def _read(self, text: str) -> None:
        for name, rest in re.findall(r"^declare function (\w+)(\(.*);$", text, re.M):
            end = closing(rest)
            self.functions[name] = sdk_signature(rest[1:end], rest[end + 2 :])
        self.constants |= set(re.findall(r"^declare const (\w+): \S", text, re.M))
        for name, body in re.findall(r"^declare const (\w+): \{\n(.*?)^\}", text, re.M | re.S):
            self.enumerations[name] = {
                member: int(value) for member, value in re.findall(r"^  (\w+): (-?\d+),$", body, re.M)
            }
        for name, heading, body in re.findall(
            r"^declare (?:class|interface) (\w+)([^\n]*) \{\n(.*?)^\}", text, re.M | re.S
        ):
            self._read_type(name, heading, body)

    def _read_type(self, name: str, heading: str, body: str) -> None:
        bases = re.sub(r"^<.*?>(?= |$)", "", heading)
        bases = re.findall(r"\w+", re.sub(r"<[^<>]*>", "", bases))
        type_ = self.types.setdefault(name, Type([]))
        type_.bases += [base for base in bases if base not in ("extends", "implements", name)]
        for line in body.splitlines():
            match = re.match(r"  (static )?(readonly )?(\w+)\??(<.*?>)?([(:].*)$", line)
            if not match:
                continue
            of_class, member, rest = bool(match[1]), match[3], match[5]
            if rest.startswith("("):
                end = closing(rest)
                signature = sdk_signature(rest[1:end], rest[end + 2 :])
                type_.methods.setdefault((of_class, member), []).append(signature)
            else:
                type_.properties[of_class, member] = (not match[2], sdk_kind(rest[1:]))

    def family(self, name: str) -> list[Type]:
        """The type and everything that it inherits from."""
        if name not in self.types:
            return []
        type_ = self.types[name]
        return [type_] + [each for base in type_.bases if base != name for each in self.family(base)]

    def inherits(self, name: str, base: str) -> bool:
        return base in self.types[name].bases or any(
            self.inherits(each, base) for each in self.types[name].bases if each in self.types and each != name
        )


class Comparison:
    """What the declarations have and the SDK has not."""

    def __init__(self, sdk: SDK) -> None:
        self.sdk = sdk
        self.compared = 0
        self.differences: list[str] = []

    def expect(self, agrees: bool, what: str) -> None:
        self.compared += 1
        if not agrees:
            self.differences.append(what)

    def class_(self, node: dict) -> None:
        name = node["name"]
        if name not in self.sdk.types:
            self.expect(False, f"class {name}")
            return
        base = node.get("super", {}).get("name")
        self.expect(base is None or self.sdk.inherits(name, base), f"class {name}: {base} as a base class")
        self.members(node)

    def members(self, node: dict) -> None:
        for member in node.get("inner", []):
            if member.get("isImplicit"):
                continue
            if member["kind"] == "ObjCMethodDecl":
                self.method(node["name"], member)
            elif member["kind"] == "ObjCPropertyDecl":
                self.property(node["name"], member)

    def method(self, owner: str, node: dict) -> None:
        selector, of_class = node["name"], not node["instance"]
        parts = selector.split(":")
        name = parts[0] + "".join(part[:1].upper() + part[1:] for part in parts[1:])
        family = self.sdk.family(owner)
        candidates = [each for type_ in family for each in type_.methods.get((of_class, name), [])]
        if ":" not in selector:  # a getter that is declared as a method
            properties = [type_.properties[of_class, name] for type_ in family if (of_class, name) in type_.properties]
            candidates += [Signature([], kind) for _, kind in properties]
        wanted = f"{'+' if of_class else '-'}[{owner} {selector}]"
        self.signature(wanted, declared_signature(node, node["returnType"]), candidates)

    def signature(self, name: str, declared: Signature, candidates: list[Signature]) -> None:
        self.expect(any(len(declared.parameters) == len(each.parameters) for each in candidates), name)
        if candidates:
            self.expect(any(map(declared.agrees, candidates)), f"{name} as {declared}, but {candidates[0]}")

    def property(self, owner: str, node: dict) -> None:
        key = (bool(node.get("class")), node["name"])
        name = f"{owner}.{node['name']}"
        found = [type_.properties[key] for type_ in self.sdk.family(owner) if key in type_.properties]
        self.expect(bool(found), f"property {name}")
        if found:
            declared, of_sdk = declared_kind(node["type"]), found[0][1]
            self.expect(agree(declared, of_sdk), f"property {name} as {declared}, but {of_sdk}")
        if found and not node.get("readonly"):
            self.expect(any(settable for settable, _ in found), f"a setter of {name}")

    def function(self, node: dict) -> None:
        name = node["name"]
        if name in LEFT_OUT:
            return
        candidates = [self.sdk.functions[name]] if name in self.sdk.functions else []
        result = {"qualType": node["type"]["qualType"].split("(")[0].strip()}
        self.signature(f"function {name}", declared_signature(node, result), candidates)

    def constant(self, node: dict) -> None:
        self.expect(node["name"] in self.sdk.constants, f"constant {node['name']}")

    def enumerators(self, node: dict) -> None:
        value = -1
        for member in node.get("inner", []):
            if member["kind"] != "EnumConstantDecl":
                continue
            value = explicit_value(member, value + 1)
            self.enumerator(node.get("name"), member["name"], value)

    def enumerator(self, enumeration: str | None, name: str, value: int) -> None:
        values = self.values(enumeration, name)
        if values:
            self.expect(value in values, f"{name} = {value}, but {values[0]}")
        else:
            self.expect(enumeration is None and name in self.sdk.constants, f"enumerator {name}")

    def values(self, enumeration: str | None, name: str) -> list[int]:
        """The values of the enumerator in the SDK, which does not repeat what all names of an enumeration begin with."""
        if name in RENAMED:
            enumeration, member = RENAMED[name]
            return [self.sdk.enumerations[enumeration][member]]
        if enumeration is None:
            return [
                value
                for owner, members in self.sdk.enumerations.items()
                for member, value in members.items()
                if owner.removesuffix("s") + member == name or owner + member == name
            ]
        members = self.sdk.enumerations.get(enumeration, {})
        candidates = [member for member in members if name.endswith(member)]
        return [members[max(candidates, key=len)]] if candidates else []


def explicit_value(node: dict, otherwise: int) -> int:
    """The value that clang has computed for an enumerator."""
    for inner in node.get("inner", []):
        if inner["kind"] == "ConstantExpr":
            return int(inner["value"])
        if (value := explicit_value(inner, None)) is not None:
            return value
    return otherwise


def declarations_in(ast: dict, folder: str):
    """The top-level declarations in files of the folder. Clang names a file only where it differs from the last one."""
    file = ""

    def visit(node) -> None:
        nonlocal file
        if isinstance(node, dict):
            if "file" in node and "offset" in node:
                file = node["file"]
            for each in node.values():
                visit(each)
        elif isinstance(node, list):
            for each in node:
                visit(each)

    def flattened(nodes):
        for node in nodes:
            visit(node.get("loc"))
            yield node, file
            visit({key: value for key, value in node.items() if key not in ("loc", "inner")})
            if node["kind"] == "LinkageSpecDecl":
                yield from flattened(node.get("inner", []))
            else:
                visit(node.get("inner"))

    return [node for node, where in flattened(ast["inner"]) if folder in where]


def main() -> int:
    comparison = Comparison(SDK(Path(sys.argv[1])))
    handlers = {
        "ObjCInterfaceDecl": comparison.class_,
        "FunctionDecl": comparison.function,
        "VarDecl": comparison.constant,
        "EnumDecl": comparison.enumerators,
    }
    for node in declarations_in(json.load(sys.stdin), sys.argv[2]):
        if node["kind"] in handlers:
            handlers[node["kind"]](node)
        elif node["kind"] == "ObjCProtocolDecl":
            comparison.members(node)
    for difference in comparison.differences:
        print(f"Not in the SDK: {difference}", file=sys.stderr)
    if comparison.compared == 0:
        print("Nothing was compared.", file=sys.stderr)
    print(f"{comparison.compared} declarations compared with the SDK's")
    return 1 if comparison.differences or comparison.compared == 0 else 0


if __name__ == "__main__":
    sys.exit(main())

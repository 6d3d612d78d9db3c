#!/usr/bin/env python3
"""Names what of an interface would make hosts fail that were built with an earlier one; both are records of abidw.

    compare.py RECORD CURRENT SYMBOLS      SYMBOLS: a file with the names that the library exports

abidiff leaves that open: it takes a record that is passed by value for harmless when it grows, and an operation behind
the last one for a change like one in the middle. What hosts rely on is this:
- A record that they make, hold by value, point to, or have in another one or in an array stays as it is.
- One that they only get by reference may get members behind its last one.
- An enumeration may get further values.
- An interface's operations keep their slots; others may follow behind the last one.
- What the library exports stays.
"""
import sys
import xml.etree.ElementTree as ET

NAMED = ("class-decl", "union-decl", "enum-decl")
IGNORED = ("subrange", "underlying-type", "enumerator", "parameter", "return", "data-member", "var-decl",
           "member-function", "member-type", "elf-function-symbols", "elf-variable-symbols", "elf-symbol")
KNOWN = NAMED + IGNORED + ("abi-instr", "namespace-decl", "type-decl", "typedef-decl", "pointer-type-def",
                           "reference-type-def", "qualified-type-def", "array-type-def", "function-type",
                           "function-decl")

STRING = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >"


class Interface:
    """The types of a record by their names, and how they are used."""

    def __init__(self, file):
        root = ET.parse(file).getroot()
        self.soname = root.get("soname")
        self.architecture = root.get("architecture")
        self.symbols = {symbol.get("name") for symbol in root.find("elf-function-symbols")}
        self.types = {}
        self.names = {}
        for unit in root.iter("abi-instr"):
            self.collect(unit, "")
        self.records = self.complete("class-decl") | self.complete("union-decl")
        self.enumerations = self.complete("enum-decl")
        self.frozen = self.find_frozen(root)

    def collect(self, parent, scope):
        for node in parent:
            if node.tag not in KNOWN:
                raise SystemExit(f"{node.tag}: the comparison does not know such a thing")
            name = scope + (node.get("name") or "")
            identity = node.get("id")
            # A type stands in each unit that uses it, somewhere perhaps only as a declaration.
            if identity and len(node) >= len(self.types.get(identity, ())):
                self.types[identity] = node
                self.names[identity] = name
            inner = node.tag in NAMED or node.tag == "namespace-decl"
            self.collect(node, name + "::" if inner else scope)

    def complete(self, tag):
        return {self.names[identity]: node for identity, node in self.types.items()
                if node.tag == tag and not node.get("is-declaration-only")}

    def target(self, identity):
        """The type, without what is another name for it or makes it constant."""
        node = self.types[identity]
        while node.tag in ("typedef-decl", "qualified-type-def"):
            identity = node.get("type-id")
            node = self.types[identity]
        return identity, node

    def text(self, identity):
        node = self.types[identity]
        inner = node.get("type-id")
        if node.tag == "typedef-decl":
            return self.text(inner)
        if node.tag == "qualified-type-def":
            qualifiers = [q for q in ("const", "volatile") if node.get(q) == "yes"]
            return " ".join(qualifiers + [self.text(inner)])
        if node.tag == "pointer-type-def":
            return self.text(inner) + "*"
        if node.tag == "reference-type-def":
            return self.text(inner) + ("&&" if node.get("kind") == "rvalue" else "&")
        if node.tag == "array-type-def":
            return self.text(inner) + "".join(f"[{part.get('length')}]" for part in node.iter("subrange"))
        if node.tag == "function-type":
            return self.signature(node)
        return self.names[identity].replace(STRING, "std::string")

    def signature(self, function, name=""):
        parameters = [self.text(p.get("type-id")) for p in function.findall("parameter")
                      if p.get("is-artificial") != "yes" and p.get("type-id")]
        parameters += ["..." for p in function.findall("parameter") if p.get("is-variadic") == "yes"]
        return f"{self.text(function.find('return').get('type-id'))} {name}({', '.join(parameters)})"

    def find_frozen(self, root):
        """The names of the records that hosts make, hold by value, point to, or have in others."""
        held = [b.get("type-id") for b in root.iter("base-class")]
        held += [m.find("var-decl").get("type-id") for m in root.iter("data-member")]
        # The library hands out what an operation returns and what a callback is given; the rest is the host's.
        for function, handed_out in [(f, "return") for f in root.iter("function-decl")] + [
                (f, "parameter") for f in root.iter("function-type")]:
            held += [part.get("type-id") for part in function
                     if part.get("type-id") and part.get("is-artificial") != "yes"
                     and not (part.tag == handed_out and self.is_reference(part.get("type-id")))]
        frozen = set()
        for identity in held:
            identity, node = self.target(identity)
            while node.tag in ("pointer-type-def", "reference-type-def", "array-type-def"):
                identity, node = self.target(node.get("type-id"))
            frozen.add(self.names[identity])
        return frozen

    def is_reference(self, identity):
        """To a record, not to a pointer."""
        node = self.target(identity)[1]
        return node.tag == "reference-type-def" and self.target(node.get("type-id"))[1].tag in NAMED

    def members(self, record):
        return [(int(m.get("layout-offset-in-bits", 0)), m.find("var-decl").get("name"),
                 self.text(m.find("var-decl").get("type-id"))) for m in record.findall("data-member")]

    def slots(self, record):
        found = {}
        for function in record.findall("member-function"):
            if function.get("vtable-offset"):
                constant = " const" if function.get("const") == "yes" else ""
                declaration = function.find("function-decl")
                found[int(function.get("vtable-offset"))] = (
                    self.signature(declaration, declaration.get("name")) + constant)
        return found

    def values(self, enumeration):
        return {e.get("name"): e.get("value") for e in enumeration.findall("enumerator")}


class Comparison:
    def __init__(self, old, new):
        self.old, self.new = old, new
        self.broken, self.added = [], []

    def compare(self, exported):
        for what in ("soname", "architecture"):
            if getattr(self.old, what) != getattr(self.new, what):
                self.broken.append(f"the {what} is {getattr(self.new, what)}, and was {getattr(self.old, what)}")
        for symbol in sorted(self.old.symbols - exported):
            self.broken.append(f"the library does not export {symbol} any more")
        for kind, compare in (("records", self.record), ("enumerations", self.enumeration)):
            old, new = getattr(self.old, kind), getattr(self.new, kind)
            for name in sorted(old):
                if name in new:
                    compare(name, old[name], new[name])
                else:
                    self.broken.append(f"{name} is gone")
            self.added += sorted(new.keys() - old.keys())

    def record(self, name, old, new):
        self.members(name, self.old.members(old), self.new.members(new))
        old_size, new_size = (int(r.get("size-in-bits")) // 8 for r in (old, new))
        fixed = self.holds(name) or self.old.slots(old)
        if new_size < old_size or (new_size != old_size and fixed):
            self.broken.append(f"{name} has {new_size} bytes, and had {old_size}")
        self.slots(name, self.old.slots(old), self.new.slots(new))

    def holds(self, name):
        return name in self.old.frozen or name in self.new.frozen

    def members(self, name, old, new):
        if name in self.new.frozen and name not in self.old.frozen:
            self.broken.append(f"{name} was only handed out by reference, and may have grown since: hosts must not hold it")
        for (offset, member, text), current in zip(old, new + [None] * len(old)):
            if current is None:
                self.broken.append(f"{name}: the member {member} is gone")
            elif current != (offset, member, text):
                self.broken.append(f"{name}: in place of {text} {member} at byte {offset // 8} there is "
                                   f"{current[2]} {current[1]} at byte {current[0] // 8}")
        for _, member, _ in new[len(old):]:
            if self.holds(name):
                self.broken.append(f"{name} has a further member, {member}, and hosts hold such records")
            else:
                self.added.append(f"{name}::{member}")

    def slots(self, name, old, new):
        for slot, operation in sorted(old.items()):
            if new.get(slot) != operation:
                self.broken.append(f"{name}: slot {slot} is {new.get(slot, 'gone')}, and was {operation}")
        for slot in sorted(new.keys() - old.keys()):
            self.added.append(f"{name}: {new[slot]} in slot {slot}")

    def enumeration(self, name, old, new):
        old_type, new_type = (i.text(e.find("underlying-type").get("type-id"))
                              for i, e in ((self.old, old), (self.new, new)))
        if old_type != new_type:
            self.broken.append(f"{name} is of another type")
        old_values, new_values = self.old.values(old), self.new.values(new)
        for value in old_values:
            if new_values.get(value) != old_values[value]:
                self.broken.append(f"{name}::{value} is {new_values.get(value, 'gone')}, and was {old_values[value]}")
        self.added += [f"{name}::{value}" for value in new_values if value not in old_values]


def main(record, current, symbols):
    comparison = Comparison(Interface(record), Interface(current))
    with open(symbols, encoding="utf-8") as exported:
        comparison.compare(set(exported.read().split()))
    for line in comparison.added:
        print(f"new: {line}")
    for line in comparison.broken:
        print(f"INCOMPATIBLE: {line}")
    if not comparison.broken:
        compared = f"{len(comparison.old.records)} records and interfaces, {len(comparison.old.enumerations)} enumerations"
        print(f"Hosts of version 1 go on: {compared} are as they were.")
        if comparison.added:
            print("What is new is not in the record yet: ./dev abi record")
    return 1 if comparison.broken else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

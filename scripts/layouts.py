#!/usr/bin/env python3
"""Prints the layouts of the types that an XML file of abidw has from the headers in a list, in order of their names."""

import os
import sys
import xml.etree.ElementTree as xml

names = {}  # by type id
scopes = {}  # full names of classes and enumerations, by element


def full_names(element, scope):
    """Notes under which full name each class and enumeration stands."""
    for child in element:
        inner = scope
        if child.tag in ("namespace-decl", "class-decl", "union-decl", "enum-decl"):
            inner = f"{scope}::{child.get('name')}" if scope else child.get("name")
            if child.tag != "namespace-decl":
                scopes[child] = inner
        full_names(child, inner)


def name_of(type_id):
    """A type in words; the layout of what it is made of stands elsewhere or is not this library's."""
    element = names.get(type_id)
    if element is None:
        return "void"
    if element in scopes:
        return scopes[element]
    inner = element.get("type-id")
    if element.tag == "pointer-type-def":
        return name_of(inner) + "*"
    if element.tag == "reference-type-def":
        return name_of(inner) + ("&" if element.get("kind") == "lvalue" else "&&")
    if element.tag == "qualified-type-def":
        return name_of(inner) + "".join(f" {word}" for word in ("const", "volatile") if element.get(word) == "yes")
    if element.tag == "array-type-def":
        return name_of(inner) + "".join(f"[{part.get('length')}]" for part in element.findall("subrange"))
    if element.tag == "typedef-decl" and inner:
        return name_of(inner)
    if element.tag == "function-type":
        parameters = ", ".join(name_of(one.get("type-id")) for one in element.findall("parameter"))
        return f"{name_of(element.find('return').get('type-id'))} ({parameters})"
    return element.get("name", element.tag)


def lines_of(element):
    """What a class or an enumeration consists of; offsets and sizes in bytes."""
    if element.tag == "enum-decl":
        return [f"  {one.get('name')} = {one.get('value')}" for one in element.findall("enumerator")]
    lines = []
    for base in element.findall("base-class"):
        lines.append(f"  {int(base.get('layout-offset-in-bits')) // 8}: {name_of(base.get('type-id'))}")
    for member in element.findall("data-member"):
        if member.get("static") != "yes":
            variable = member.find("var-decl")
            offset = int(member.get("layout-offset-in-bits")) // 8
            lines.append(f"  {offset}: {name_of(variable.get('type-id'))} {variable.get('name')}")
    functions = [one for one in element.findall("member-function") if int(one.get("vtable-offset", "-1")) >= 0]
    for one in sorted(functions, key=lambda one: (int(one.get("vtable-offset")), one.find("function-decl").get("name"))):
        lines.append(f"  virtual {one.get('vtable-offset')}: {one.find('function-decl').get('mangled-name')}")
    return lines


def is_declared_in(element, headers):
    return os.path.relpath(element.get("filepath", "/")) in headers


def main():
    root = xml.parse(sys.argv[1]).getroot()
    with open(sys.argv[2], encoding="utf-8") as lines:
        headers = set(lines.read().split())
    full_names(root, "")
    for element in root.iter():
        if element.get("id") and element.get("is-declaration-only") != "yes":
            names.setdefault(element.get("id"), element)
    paragraphs = set()
    for element, name in scopes.items():
        if is_declared_in(element, headers) and element.get("is-declaration-only") != "yes":
            size = f" {int(element.get('size-in-bits')) // 8}" if element.get("size-in-bits") else ""
            paragraphs.add("\n".join([name + size, *lines_of(element)]))
    print("\n".join(sorted(paragraphs)))


main()

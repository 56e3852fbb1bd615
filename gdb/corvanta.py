"""Printers of gdb for corvanta: counted pointers, nodes, ids, variants, references, paths, locators, vectors, boxes and
matrices. In gdb, or in ~/.gdbinit:

    source .../corvanta.py

What is printed is read from memory alone; nothing in the program is called, so that core files print too. `print/r` shows
an object's members as they are.
"""
import re
import uuid

import gdb
import gdb.printing


def text_of(wide):
    """The text of a std::wstring."""
    length = int(wide["_M_string_length"])
    return wide["_M_dataplus"]["_M_p"].string("utf-32", "replace", length) if length else ""


def quoted(wide):
    return '"' + text_of(wide).replace("\\", "\\\\").replace('"', '\\"') + '"'


def number(value):
    return f"{float(value):.9g}"


def owned(value):
    """What a std::unique_ptr holds: it is nothing but the pointer."""
    pointer = value.type.strip_typedefs().template_argument(0).pointer()
    return value.address.reinterpret_cast(pointer.pointer()).dereference()


def id_of(value):
    text = owned(value["m_text"])
    if int(text):
        return text_of(text.dereference())
    data = value["m_uuid"]["data"]
    return str(uuid.UUID(bytes=bytes(int(data[i]) & 0xFF for i in range(16)))).upper()


def short_name(type_):
    name = type_.strip_typedefs().unqualified().name or str(type_)
    return re.sub(r"\b(?:\w+::)+", "", name)


def whole(value):
    """The object that the value is a part of, as far as its class is known."""
    try:
        return value.cast(value.dynamic_type)
    except gdb.error:
        return value


def describe(value):
    """A counted object in a few words: its class and, of a node, name and id."""
    value = whole(value)
    try:
        return f"{short_name(value.type)} {quoted(value['m_name'])} {id_of(value['m_id'])}"
    except gdb.error:
        return short_name(value.type)


def describe_pointer(pointer):
    if not int(pointer):
        return "null"
    target = pointer.dereference()
    try:
        return f"{describe(target)} at {hex(int(pointer))}, count {int(whole(target)['m_count']['_M_i'])}"
    except gdb.error:
        return f"{describe(target)} at {hex(int(pointer))}"


def describe_reference(value):
    weak = value["m_weak"]["px"]
    if not int(weak):
        return "empty"
    if not int(weak["m_object"]):
        return "gone"
    return describe(value["m_node"].dereference())


class Printer:
    """Prints a value as one line."""

    def __init__(self, value, write):
        self.value = value
        self.write = write

    def to_string(self):
        return self.write(self.value)


class PointerPrinter(Printer):
    """A counted pointer; what it points to is its child."""

    def __init__(self, value):
        super().__init__(value, lambda v: describe_pointer(v["px"]))


class PathPrinter:
    """A path: its item and tree, and the references on the way to it."""

    def __init__(self, value):
        self.block = owned(value["m_block"]).dereference()

    def to_string(self):
        return f"path to {describe_reference(self.block['item'])} in {describe_reference(self.block['tree'])}"

    def children(self):
        points = self.block["checkPoints"]["_M_impl"]
        at, end = points["_M_start"], points["_M_finish"]
        while at != end:
            yield "through", at.dereference()
            at += 1


def write_variant(value):
    kind = int(value["m_kind"])
    if kind == 1:
        return number(value["m_double"])
    if kind == 2:
        return str(int(value["m_long"]))
    if kind == 3:
        return "true" if value["m_bool"] else "false"
    if kind == 4:
        return quoted(value["m_string"].dereference())
    return "nothing"


def write_vector(value):
    return "(" + ", ".join(number(value[field.name]) for field in value.type.fields() if not hasattr(field, "enumval")
                           and not field.is_base_class and hasattr(field, "bitpos")) + ")"


def write_matrix(value):
    cells = [number(value["m_values"][i]) for i in range(16)]
    return "[" + "; ".join(" ".join(cells[4 * row:4 * row + 4]) for row in range(4)) + "]"


def write_uri(value):
    kinds = {"UT_FILE": "file", "UT_INTERNAL": "internal", "UT_SYSTEM": "system"}
    kind = str(value["m_type"]).rsplit("::", 1)[-1]
    return f"{kinds.get(kind, kind)} {quoted(value['m_path']['m_text'])}"


def write_locator(value):
    entry = text_of(value["m_zippedPath"]["m_text"])
    return write_uri(value["m_uri"]) + (f' entry "{entry}"' if entry else "")


WRITERS = {
    "corvanta::core::node::NNodeID": id_of,
    "corvanta::core::variant::NVariant": write_variant,
    "corvanta::core::uri::NPath": lambda value: quoted(value["m_text"]),
    "corvanta::core::uri::NUri": write_uri,
    "corvanta::core::locator::NLocator": write_locator,
    "VX_Math::Matrix": write_matrix,
    "VX_Math::Vec2": write_vector,
    "VX_Math::Vec3": write_vector,
    "VX_Math::Quaternion": write_vector,
    "VX_Math::Box3": lambda value: f"{write_vector(value['min'])} .. {write_vector(value['max'])}",
}


def is_node(type_):
    """Whether the class is a node's."""
    if type_.code != gdb.TYPE_CODE_STRUCT:
        return False
    if type_.name == "corvanta::core::node::NNode":
        return True
    return any(field.is_base_class and is_node(field.type.strip_typedefs()) for field in type_.fields())


class Printers(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("corvanta", [])

    def __call__(self, value):
        type_ = value.type.strip_typedefs().unqualified()
        if type_.code != gdb.TYPE_CODE_STRUCT:
            return None
        name = type_.name or ""
        if name in WRITERS:
            return Printer(value, WRITERS[name])
        if name.startswith("boost::intrusive_ptr<"):
            return PointerPrinter(value)
        if name.startswith("corvanta::core::node::NNodeReference"):
            return Printer(value, describe_reference)
        if name.startswith("corvanta::data::domain::scenegraph::NSceneGraphPath<"):
            return PathPrinter(value)
        if name.startswith("corvanta::") and is_node(type_):
            return Printer(value, describe)
        return None


gdb.printing.register_pretty_printer(None, Printers(), replace=True)

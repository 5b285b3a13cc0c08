"""Slices of block diagrams by plain graph reachability.

A second opinion on torvan-slice: nothing is shared with it, and no equations are solved here. Every output element of
every leaf block is a node; a slice is what can be reached from one.
"""

import re
import struct
import xml.etree.ElementTree as ET
import zipfile
from collections import defaultdict
from dataclasses import dataclass, field
from functools import cache, cached_property

DATA_IN, DATA_OUT = "ExplicitInputPort", "ExplicitOutputPort"
EVENT_IN, EVENT_OUT = "ControlPort", "CommandPort"
IMPLICIT = ("ImplicitInputPort", "ImplicitOutputPort")
LINKS = ("ExplicitLink", "CommandControlLink", "ImplicitLink")
# The block inside a super-block that continues a port of the super-block.
INNER = {
    DATA_IN: "ExplicitInBlock", DATA_OUT: "ExplicitOutBlock",
    EVENT_IN: "EventInBlock", EVENT_OUT: "EventOutBlock",
    IMPLICIT[0]: "ImplicitInBlock", IMPLICIT[1]: "ImplicitOutBlock",
}
TAGGED = {"GOTO": "FROM", "CLKGOTO": "CLKFROM"}  # sender and receiver
SCOPES = ("GotoTagVisibility", "CLKGotoTagVisibility")  # blocks that set the scope of a tag
TAG_KINDS = {*TAGGED, *TAGGED.values(), *SCOPES}
UNNAMED = {"SuperBlock": "SUPER_f", "SplitBlock": "SPLIT_f"}
MUX, DEMUX = ("MUX", "MUX_f"), ("DEMUX", "DEMUX_f")
ELEMENTWISE = ("SUMMATION", "BIGSOM_f", "SUM_f", "INTEGRAL_m")
SCALAR = re.compile(r"\[?\s*[-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?\s*\]?")
INTEGERS = re.compile(r"\[?\s*(-?\d+(?:[\s,;]+-?\d+)*)\s*\]?")
ABSENT_EXTENT = 1  # rows or columns of a port that does not state them
CONFLICT = 0  # a size on which the evidence disagrees


class SerialReader:
    """Reads a Java serialization stream, keeping only nested lists of values."""

    PRIMITIVES = {"B": "b", "C": "H", "D": "d", "F": "f", "I": "i", "J": "q", "S": "h", "Z": "?"}
    END = object()

    def __init__(self, data):
        self.data, self.at, self.handles = data, 0, []
        if self.take("HH") != (0xACED, 5):
            raise ValueError("not a serialization stream")

    def take(self, layout):
        values = struct.unpack_from(">" + layout, self.data, self.at)
        self.at += struct.calcsize(">" + layout)
        return values

    def raw(self, size):
        self.at += size
        return self.data[self.at - size:self.at]

    def utf(self):
        return self.raw(*self.take("H")).decode("utf-8", "surrogateescape")

    def remember(self, value):
        self.handles.append(value)
        return value

    def content(self):
        code, = self.take("B")
        return {
            0x70: lambda: None,
            0x71: lambda: self.handles[self.take("i")[0] - 0x7E0000],
            0x72: self.class_description,
            0x73: self.object,
            0x74: lambda: self.remember(self.utf()),
            0x75: self.array,
            0x77: lambda: self.raw(*self.take("B")),
            0x78: lambda: self.END,
            0x7A: lambda: self.raw(*self.take("i")),
        }[code]()

    def contents(self):
        return list(iter(self.content, self.END))

    def value(self, code):
        return self.content() if code in "[L" else self.take(self.PRIMITIVES[code])[0]

    def array(self):
        code = self.content()["name"][1]
        values = self.remember([])
        count, = self.take("i")
        values.extend(self.value(code) for _ in range(count))
        return values

    def class_description(self):
        name, _ = self.utf(), self.take("q")
        description = self.remember({"name": name})
        description["flags"], count = self.take("BH")
        description["fields"] = []
        for _ in range(count):
            code = chr(*self.take("B"))
            self.utf()
            if code in "[L":
                self.content()
            description["fields"].append(code)
        self.contents()
        description["super"] = self.content()
        return description

    def object(self):
        description = self.content()
        result = self.remember([])
        if description["flags"] & 4:
            header, *rest = self.contents()
            if description["name"].endswith("ScilabList"):
                _, size = struct.unpack_from(">ii", header)
                result.extend(rest[:size])
            else:
                result.extend(rest[0] or [])
            return result
        chain = []
        while description:
            chain.append(description)
            description = description["super"]
        for part in reversed(chain):
            result.extend(self.value(code) for code in part["fields"])
            if part["flags"] & 1:
                result.extend(self.contents())
        return result


@dataclass(eq=False)
class Port:
    tag: str
    number: int
    size: int | None  # None: inherited from what it is connected to
    net: "Port | None" = None  # union-find parent

    def root(self):
        port = self
        while port.net:
            port = port.net
        return port

    def join(self, other):
        first, second = self.root(), other.root()
        if first is not second:
            first.net = second


@dataclass(eq=False)
class Block:
    cell: ET.Element
    kind: str
    name: str
    scope: tuple  # of the enclosing diagrams, outermost first
    exprs: list
    inner: ET.Element | None
    ports: list = field(default_factory=list)

    @property
    def feeds_through(self):
        return self.cell.get("dependsOnU") == "1"

    def select(self, *tags):
        return [port for port in self.ports if port.tag in tags]


class Reader:
    def __init__(self, dictionary):
        self.dictionary = dictionary
        self.leaves = []
        self.tags = []
        self.scopes = 0

    def parameters(self, cell, role):
        """The values of a parameter, row by row."""
        for child in cell:
            if child.get("as") == role:
                if child.get("binary") == "true":
                    rows = self.dictionary[int(child.get("position"))]
                    return [value for row in rows for value in row]
                return [item.get("value", item.get("realPart")) for item in child.iter("data")]
        return []

    def scan(self, root, path=(), scope=()):
        """Reads one diagram and those below; returns its In and Out blocks as {(tag, number): ports}."""
        scope += (self.scopes,)
        self.scopes += 1
        blocks, ports, counts = {}, {}, defaultdict(int)
        for cell in root:
            if cell.get("simulationFunctionType") is not None and cell.tag != "TextBlock":
                kind = cell.get("interfaceFunctionName") or UNNAMED.get(cell.tag, cell.tag)
                counts[kind] += 1
                blocks[cell.get("id")] = Block(
                    cell, kind, "/".join((*path, f"{kind}#{counts[kind]}")), scope, self.parameters(cell, "exprs"),
                    cell.find("SuperBlockDiagram[@as='child']/mxGraphModel/root"))
        for cell in root:
            if cell.tag in INNER and cell.get("parent") in blocks:
                lines, columns = (int(cell.get(name, ABSENT_EXTENT)) for name in ("dataLines", "dataColumns"))
                size = lines * columns if min(lines, columns) > 0 else None
                port = Port(cell.tag, int(cell.get("ordering", 0)), size)
                ports[cell.get("id")] = port
                blocks[cell.get("parent")].ports.append(port)
        for cell in root:
            if cell.tag in LINKS:
                ends = [ports.get(self.link_end(cell, role)) for role in ("source", "target")]
                if None not in ends:
                    ends[0].join(ends[1])
        interface = {}
        for block in blocks.values():
            block.ports.sort(key=lambda port: port.number)
            self.place(block, path, interface)
        return interface

    @staticmethod
    def link_end(cell, role):
        for child in cell:
            if child.get("as") == role:
                return child.get("id")
        return cell.get(role)

    def place(self, block, path, interface):
        if block.inner is not None:
            inside = self.scan(block.inner, (*path, block.name.rpartition("/")[2]), block.scope)
            for port in block.ports:
                for continued in inside.get((INNER[port.tag], port.number), []):
                    port.join(continued)
        elif block.cell.tag == "SplitBlock":
            for port in block.ports[1:]:
                port.join(block.ports[0])
        elif block.cell.tag in INNER.values() and path:
            number = (self.parameters(block.cell, "integerParameters") or block.exprs)[0]
            interface.setdefault((block.cell.tag, int(float(number))), []).extend(block.ports)
        elif block.kind in TAG_KINDS:
            self.tags.append(block)
        else:
            self.leaves.append(block)

    def join_tags(self):
        for sender in self.tags:
            for receiver in self.tags:
                if receiver.kind == TAGGED.get(sender.kind) and self.visible(sender, receiver):
                    for port in receiver.ports:
                        port.join(sender.ports[0])

    def visible(self, sender, receiver):
        tag, visibility = sender.exprs[:2]
        if receiver.exprs[0] != tag:
            return False
        if visibility == "1":
            return receiver.scope == sender.scope
        if visibility == "3":
            return True
        return any(
            marker.kind in SCOPES and marker.exprs[0] == tag
            and all(block.scope[:len(marker.scope)] == marker.scope for block in (sender, receiver))
            for marker in self.tags)


@cache
def read(path):
    """The leaf blocks of a diagram, and of those inside it."""
    if zipfile.is_zipfile(path):
        with zipfile.ZipFile(path) as archive:
            document = ET.fromstring(archive.read("content.xml"))
            dictionary = SerialReader(archive.read("dictionary/dictionary.ser")).content()
    else:
        document, dictionary = ET.parse(path).getroot(), None
    reader = Reader(dictionary)
    root = document.find("mxGraphModel[@as='model']/root")
    if root is not None:
        reader.scan(root)
    reader.join_tags()
    return reader.leaves


def agree(evidence):
    """The one size all evidence gives; None without any."""
    known = set(evidence) - {None}
    return None if not known else known.pop() if len(known) == 1 else CONFLICT


def combine(sizes, rule):
    if CONFLICT in sizes:
        return CONFLICT
    return None if None in sizes or not sizes else rule(sizes)


def integers(block):
    match = INTEGERS.fullmatch((block.exprs or [""])[0].strip())
    return match and [int(word) for word in re.split(r"[\s,;]+", match[1])]


def listed(block, ports):
    """The sizes of the ports by the parameter of a MUX or DEMUX: a list of them, or only their number."""
    sizes = integers(block)
    if sizes is None or sizes == [len(ports)]:
        return [None] * len(ports)
    if len(sizes) != len(ports):
        return [CONFLICT] * len(ports)
    return [size if size > 0 else None for size in sizes]


class Network:
    """Who reads whom. A node is an output element (port, index), or a leaf for all that the leaf reads."""

    def __init__(self, leaves, deps):
        event = deps == "activation"
        self.inputs = (DATA_IN, *IMPLICIT, *[EVENT_IN] * event)
        self.outputs = (DATA_OUT, *IMPLICIT, *[EVENT_OUT] * event)
        self.owner = {port: leaf for leaf in leaves for port in leaf.ports}
        nets = defaultdict(list)
        for port in self.owner:
            nets[port.root()].append(port)
        self.drivers = {port: [other for other in nets[port.root()] if self.drives(other, port)] for port in self.owner}
        self.sizes = dict.fromkeys(self.owner)
        self.solve_sizes(leaves)
        self.reads = {}
        for leaf in leaves:
            self.add_reads(leaf, deps == "direct" and not leaf.feeds_through)

    def drives(self, source, reader):
        if reader.tag in IMPLICIT:
            return source.tag in IMPLICIT and self.owner[source] is not self.owner[reader]
        return (source.tag, reader.tag) in ((DATA_OUT, DATA_IN), (EVENT_OUT, EVENT_IN))

    def solve_sizes(self, leaves):
        changed = True
        while changed:
            changed = False
            for leaf in leaves:
                for port, evidence in self.size_evidence(leaf):
                    size = agree([port.size, *evidence])
                    changed |= size != self.sizes[port]
                    self.sizes[port] = size

    def size_evidence(self, leaf):
        ins, outs = leaf.select(DATA_IN), leaf.select(DATA_OUT)
        by_input = [[self.sizes[driver] for driver in self.drivers[port]] for port in ins]
        by_output = [[] for _ in outs]
        in_sizes, out_sizes = ([self.sizes[port] for port in ports] for ports in (ins, outs))
        if leaf.kind in MUX:
            for evidence, size in zip(by_input, listed(leaf, ins)):
                evidence.append(size)
            by_output = [[combine(in_sizes, sum)] for _ in outs]
        elif leaf.kind in DEMUX:
            for evidence, size in zip(by_output, listed(leaf, outs)):
                evidence.append(size)
            for evidence in by_input:
                evidence.append(combine(out_sizes, sum))
        elif leaf.kind == "EXTRACTOR":
            by_output = [[len(indices)] for indices in [integers(leaf)] * len(outs) if indices]
        elif self.elementwise(leaf):
            by_output = [[combine(in_sizes, agree)] for _ in outs]
        return [*zip(ins, by_input), *zip(outs, by_output)]

    @staticmethod
    def elementwise(leaf):
        return leaf.kind in ELEMENTWISE or leaf.kind == "GAINBLK" and SCALAR.fullmatch((leaf.exprs or [""])[0].strip())

    def routes(self, leaf):
        """For each data output element the (port, index) pairs it reads, or None where all inputs are mixed."""
        ins, outs = leaf.select(DATA_IN), leaf.select(DATA_OUT)
        sizes = [self.sizes[port] for port in ins + outs]
        if not all(sizes):
            return None
        elements = [(port, index) for port in ins for index in range(self.sizes[port])]
        if leaf.kind in MUX + DEMUX:
            sources = [[element] for element in elements]
        elif leaf.kind == "EXTRACTOR":
            indices = integers(leaf) or [0]
            if not all(0 < index <= len(elements) for index in indices):
                return None
            sources = [[elements[index - 1]] for index in indices]
        elif self.elementwise(leaf) and len(set(sizes)) == 1:
            sources = [[(port, index) for port in ins] for index in range(sizes[0])]
        else:
            return None
        targets = [(port, index) for port in outs for index in range(self.sizes[port])]
        return dict(zip(targets, sources)) if len(sources) == len(targets) else None

    def sources(self, port, index=None):
        """The nodes read by an input port or by one element of it."""
        for driver in self.drivers[port]:
            size = self.sizes[driver] or 1
            if index is None or not self.sizes[driver]:
                yield from ((driver, element) for element in range(size))
            elif index < size:
                yield driver, index
            else:
                raise LookupError(f"no element {index + 1} among {size}")

    def nodes(self, leaf):
        return [(port, index) for port in leaf.select(*self.outputs) for index in range(self.sizes[port] or 1)]

    def add_reads(self, leaf, opaque):
        self.reads[leaf] = {node for port in leaf.select(*self.inputs) for node in self.sources(port)}
        routes = self.routes(leaf) or {}
        always = {node for port in leaf.select(*set(self.inputs) - {DATA_IN}) for node in self.sources(port)}
        for node in self.nodes(leaf):
            if opaque:
                self.reads[node] = set()
            elif node in routes:
                self.reads[node] = always.union(*(self.sources(*element) for element in routes[node]))
            else:
                self.reads[node] = {leaf}

    @cached_property
    def read_by(self):
        readers = defaultdict(set)
        for node, read in self.reads.items():
            for other in read:
                readers[other].add(node)
        return readers

    def reach(self, start, edges):
        reached = set(start)
        pending = list(reached)
        while pending:
            fresh = edges.get(pending.pop(), set()) - reached
            reached |= fresh
            pending.extend(fresh)
        return {node if isinstance(node, Block) else self.owner[node[0]] for node in reached}


@cache
def network(path, deps):
    return Network(read(path), deps)


def slice(path, criterion, deps, direction):
    """The names of the leaves that influence the criterion or, forward, that it influences; itself among them."""
    name, number, element = re.fullmatch(r"(.*?)(?:\.in(\d+)(?:\[(\d+)\])?)?", criterion).groups()
    leaf = next(block for block in read(path) if block.name == name)
    graph = network(path, deps)
    if direction == "forward":
        reached = graph.reach(graph.nodes(leaf), graph.read_by)
    elif number:
        port = next(port for port in leaf.select(DATA_IN, IMPLICIT[0]) if port.number == int(number))
        reached = graph.reach(graph.sources(port, element and int(element) - 1), graph.reads)
    else:
        reached = graph.reach([leaf], graph.reads)
    return sorted(block.name for block in {leaf, *reached})

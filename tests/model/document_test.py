#!/usr/bin/env python3
"""The documents of `kovactl model` as other programs read them, against what `kovactl list` and `get` say.

usage: document_test.py KOVACTL PAGE [unittest arguments]
"""
import csv
import io
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import uuid
import xml.etree.ElementTree
from collections import defaultdict
from pathlib import Path

KOVACTL, PAGE = sys.argv[1], Path(sys.argv[2])
SCHEMA = Path(__file__).resolve().parent / "schema"
NUMBER = re.compile(r"(?<=\.)\d+(?=\.)")


def run(*words, status=0):
    result = subprocess.run([KOVACTL, *words], capture_output=True)
    assert result.returncode == status, result.stderr.decode()
    return result.stdout.decode()


def answer(*words):
    return json.loads(run("--json", *words))


def owner(path):
    """The object of a parameter."""
    return path[: path.rindex(".") + 1]


def parent(path):
    """The object in which an object is; a number is part of it."""
    return re.sub(r"[^.]+\.(\{i\}\.|\d+\.)?$", "", path)


class Document(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="kova-model-")
        self.addCleanup(scratch.cleanup)
        self.device = Path(scratch.name) / "device"
        os.environ.update(KOVA_DEVICE=str(self.device), KOVA_FEED="off")
        self.listed = answer("list")
        # By object, instances as one; each with the paths that it has on the device.
        self.parameters, self.instances = {}, defaultdict(set)
        for one in self.listed:
            self.parameters.setdefault(NUMBER.sub("{i}", one["path"]), one)
            path = owner(one["path"])
            while path:
                self.instances[NUMBER.sub("{i}", path)].add(path)
                path = parent(path)


class Xml(Document):
    def setUp(self):
        super().setUp()
        self.text, self.definitions = run("model", "--format", "xml"), run("model", "--format", "datamodel")
        self.document = xml.etree.ElementTree.fromstring(self.text)
        self.objects = self.document.findall("model/object")

    def test_is_valid_and_needs_no_device(self):
        environment = {**os.environ, "XML_CATALOG_FILES": (SCHEMA / "catalog.xml").as_uri()}
        for text, schema in ((self.text, "cwmp-devicetype-1-5.xsd"), (self.definitions, "cwmp-datamodel-1-8.xsd")):
            result = subprocess.run(["xmllint", "--nonet", "--noout", "--schema", SCHEMA / schema, "-"],
                                    input=text, text=True, capture_output=True, env=environment)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertFalse(self.device.exists())

    def test_refers_to_what_is_defined_once(self):
        with open(SCHEMA.parents[2] / "model/standard.tsv", newline="") as file:
            standard = {row["path"]: row for row in csv.DictReader(file, dialect="excel-tab")
                        if ".Services.Voice" not in row["path"]}
        definitions = xml.etree.ElementTree.fromstring(self.definitions)
        own = definitions.find("model")
        for document, model in ((self.document, self.document.find("model").get("ref")), (definitions, own.get("base"))):
            self.assertIn(model, [one.get("name") for one in document.findall("import/model")])
        imported = {one.get("file"): one.get("spec") for one in self.document.findall("import")}
        self.assertEqual(imported[definitions.get("file")], definitions.get("spec"))
        self.assertEqual(own.get("name"), self.document.find("model").get("ref"))
        defined = {}
        for entry in own.findall("object"):
            path = entry.get("name") or entry.get("base")
            if entry.get("base"):
                self.assertEqual(entry.get("access"), standard[path]["access"], path)
            names = [path] if entry.get("name") else []
            for name in names + [path + parameter.get("name") for parameter in entry.findall("parameter")]:
                self.assertNotIn(name, standard)
                self.assertNotIn(name, defined)
                defined[name] = entry
        for entry in self.objects:
            path = entry.get("ref")
            for name in [path, *(path + parameter.get("ref") for parameter in entry.findall("parameter"))]:
                self.assertTrue(name in standard or defined.pop(name, None) is not None, name)
        self.assertEqual(defined.keys(), set())
        mtu = own.find("object[@name='InternetGatewayDevice.WANDevice.{i}.X_KOVA_APN.']/parameter/syntax/unsignedInt")
        self.assertEqual([{**facet.attrib} for facet in mtu],
                         [{"minInclusive": "576", "maxInclusive": "1500"}, {"value": "bytes"}])

    def test_has_every_parameter_once(self):
        found = {}
        for entry in self.objects:
            for parameter in entry.findall("parameter"):
                path = entry.get("ref") + parameter.get("ref")
                self.assertNotIn(path, found)
                syntax = list(parameter.find("syntax"))
                type_name = syntax[0].get("ref", syntax[0].tag)
                self.assertEqual([item.tag for item in syntax[1:]], ["string"] if type_name == "list" else [])
                found[path] = (type_name, parameter.get("access"), parameter.findtext("annotation"))
        self.assertEqual(found.keys(), self.parameters.keys())
        for path, (type_name, access, annotation) in found.items():
            expected = self.parameters[path]
            self.assertEqual((type_name, access), (expected["type"], expected["access"]), path)
            self.assertTrue(annotation.startswith(expected["meaning"]), path)
            self.assertIn(expected["unit"], annotation)

    def test_has_every_object_once_behind_its_parent(self):
        seen = [""]
        writable_lists = [owner(one["path"]) for one in answer("list", "--lists", "--writable")]
        for entry in self.objects:
            path = entry.get("ref")
            self.assertIn(parent(path), seen)
            seen.append(path)
            instances = self.instances[path]
            entries = str(len(instances) // len(self.instances.get(parent(path), [""])))
            bounds = ("0", "unbounded") if any("{i}" in one for one in instances) else (entries, entries)
            self.assertEqual((entry.get("minEntries"), entry.get("maxEntries")), bounds, path)
            self.assertEqual(entry.get("access"),
                             "createDelete" if instances & set(writable_lists) else "readOnly", path)
        self.assertEqual(sorted(seen[1:]), sorted(self.instances))

    def test_is_named_by_its_own_text(self):
        given = self.document.get("uuid")
        self.assertEqual(given, str(uuid.uuid5(uuid.NAMESPACE_URL, self.text.replace(given, str(uuid.UUID(int=0))))))


class Csv(Document):
    def setUp(self):
        super().setUp()
        self.addCleanup(run, "device", "down")
        # Without a server no interface leads to it.
        run("nvram", "set", "TR_ACS_URL=http://127.0.0.1:1/", "S_TR_ACS_URL=http://127.0.0.1:1/")

    def table(self):
        rows = list(csv.DictReader(io.StringIO(run("model", "--format", "csv"), newline="")))
        self.assertEqual(list(rows[0]), ["Parameter", "Object", "Writable", "Value", "Value type"])
        paths = [row["Parameter"] for row in rows]
        self.assertEqual(paths, sorted(set(paths)))
        return {row["Parameter"]: row for row in rows}

    def test_shows_the_device(self):
        run("nvram", "set", 'static_route_key=a "quoted", row;of two\r\nlines', "ROUTEHOPS_HOPHOST=;2")
        for _ in range(20):  # what counts on, or goes to and fro, may differ in one reading, but not in all of them
            before, rows, after = answer("get", ""), self.table(), answer("get", "")
            values = {one["path"]: one["value"] for one in before["parameters"]}
            steady = {one["path"] for one in after["parameters"] if one["value"] == values[one["path"]]}
            different = {path: (rows[path]["Value"], values[path]) for path in steady
                         if path in rows and rows[path]["Value"] != values[path]}
            if not different:
                break
        self.assertEqual(different, {})
        self.assertGreater(len(steady), len(values) * 0.9)
        self.assertEqual({path for path, row in rows.items() if row["Object"] == "false"}, set(values))
        types = {one["path"]: one["type"] for one in before["parameters"]}
        for path in values:
            plain = types[path] not in ("IPAddress", "MACAddress", "list")
            self.assertEqual(rows[path]["Value type"], "xsd:" + (types[path] if plain else "string"), path)
            access = self.parameters[NUMBER.sub("{i}", path)]["access"]
            self.assertEqual(rows[path]["Writable"], "true" if access == "readWrite" else "false", path)

    def test_shows_objects_and_rows(self):
        run("nvram", "set", "static_route_key=one;two", "ROUTEHOPS_HOPHOST=hop")
        rows = self.table()
        writable = {path for path, row in rows.items() if row["Object"] == "true" and row["Writable"] == "true"}
        lists = {owner(one["path"])[: -len(".{i}.")] for one in answer("list", "--lists", "--writable")}
        self.assertLessEqual(lists, writable)
        routes = "InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route."
        self.assertLessEqual({routes + "1", routes + "2"}, writable)
        self.assertTrue(all(path in lists or owner(path)[:-1] in lists for path in writable), writable)
        self.assertEqual(rows["InternetGatewayDevice.TraceRouteDiagnostics.RouteHops.1"]["Object"], "true")
        for path, row in rows.items():
            if path != "InternetGatewayDevice":
                self.assertEqual(rows[owner(path)[:-1]]["Object"], "true", path)
            if row["Object"] == "true":
                self.assertEqual(row["Value"] + row["Value type"], "", path)

    def test_leaves_empty_what_cannot_be_read(self):
        path = "InternetGatewayDevice.ManagementServer.X_KOVA_Interface"
        run("nvram", "set", "TR_IF_TYPE=carrier_pigeon")
        result = subprocess.run([KOVACTL, "model", "--format", "csv"], capture_output=True, text=True)
        self.assertEqual(result.returncode, 1)
        self.assertIn(path + ",false,false,,xsd:string\n", result.stdout)
        self.assertRegex(result.stderr, "^9002 .*" + path)

    def test_acts_for_the_secondary_instance(self):
        path = "InternetGatewayDevice.IPPingDiagnostics.Host"
        run("--secondary", "set", path + "=192.0.2.2")
        self.assertIn(path + ",false,true,192.0.2.2,xsd:string\n", run("--secondary", "model", "--format", "csv"))


class Page(Document):
    def test_is_in_step(self):
        page = run("model", "--format", "markdown")
        self.assertEqual(PAGE.read_text(), page,
                         "The page is behind. Write it anew: kovactl model --format markdown > docs/parameters.md")
        self.assertFalse(self.device.exists())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])

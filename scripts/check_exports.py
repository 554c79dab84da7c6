#!/usr/bin/env python3
"""Holds exported flights against the schemas of their formats. check_exports.py NORVANE-CLI RECORDING...

Needs Debian's mirror and npm's, and the packages libxml2-utils and python3-jsonschema. The recordings are imported into a program
directory that is made for it and removed. Each file is told of; the exit status tells whether all are valid."""

import json
import subprocess
import sys
import tempfile
from pathlib import Path

import jsonschema

# Carries the schemas of GPX 1.1 and KML 2.2 among its files.
DEBIAN_PACKAGE = "pytrainer"
SCHEMAS = "usr/share/pytrainer/schemas"
NPM_PACKAGE = "geojson-schema"
# The extension of KML by which tracks carry their times, as its reference describes it; no package has its schema.
TRACKS = "http://www.google.com/kml/ext/2.2"
KML = "http://www.opengis.net/kml/2.2"
TRACKS_SCHEMA = f"""<?xml version="1.0"?>
<schema xmlns="http://www.w3.org/2001/XMLSchema" xmlns:gx="{TRACKS}" xmlns:kml="{KML}" targetNamespace="{TRACKS}"
        elementFormDefault="qualified">
<import namespace="{KML}" schemaLocation="ogckml22.xsd"/>
<simpleType name="coord"><restriction base="string">
<pattern value="-?[0-9]+(\\.[0-9]+)? -?[0-9]+(\\.[0-9]+)? -?[0-9]+(\\.[0-9]+)?"/></restriction></simpleType>
<element name="coord" type="gx:coord"/>
<element name="interpolate" type="boolean"/>
<element name="Track" substitutionGroup="kml:AbstractGeometryGroup"><complexType><complexContent>
<extension base="kml:AbstractGeometryType"><sequence>
<element ref="kml:altitudeModeGroup" minOccurs="0"/>
<element ref="kml:when" minOccurs="0" maxOccurs="unbounded"/>
<element ref="gx:coord" minOccurs="0" maxOccurs="unbounded"/>
</sequence></extension></complexContent></complexType></element>
<element name="MultiTrack" substitutionGroup="kml:AbstractGeometryGroup"><complexType><complexContent>
<extension base="kml:AbstractGeometryType"><sequence>
<element ref="kml:altitudeModeGroup" minOccurs="0"/>
<element ref="gx:interpolate" minOccurs="0"/>
<element ref="gx:Track" minOccurs="0" maxOccurs="unbounded"/>
</sequence></extension></complexContent></complexType></element>
</schema>
"""


def run(*words, where):
    return subprocess.run(words, cwd=where, check=True, capture_output=True, text=True).stdout


def fetch_schemas(directory):
    """The schemas by format: what xmllint reads, and for JSON the schema itself."""
    run("apt-get", "download", DEBIAN_PACKAGE, where=directory)
    run("dpkg-deb", "-x", next(directory.glob("*.deb")), ".", where=directory)
    run("npm", "pack", NPM_PACKAGE, where=directory)
    run("tar", "xzf", next(directory.glob("*.tgz")), where=directory)
    schemas = directory / SCHEMAS
    (schemas / "tracks.xsd").write_text(TRACKS_SCHEMA)
    return {
        "gpx": schemas / "Topografix_gpx11.xsd",
        "kml": schemas / "tracks.xsd",
        "geojson": json.loads((directory / "package/FeatureCollection.json").read_text()),
    }


def fault_of(file, schema):
    """What is wrong with a file; empty when it is valid."""
    if not isinstance(schema, Path):
        try:
            jsonschema.validate(json.loads(file.read_text(encoding="utf-8")), schema)
        except jsonschema.ValidationError as fault:
            return str(fault.message)
        return ""
    done = subprocess.run(["xmllint", "--noout", "--nonet", "--schema", schema, file], capture_output=True, text=True, check=False)
    return "" if done.returncode == 0 else done.stderr.splitlines()[0]


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    program = Path(sys.argv[1]).resolve()
    faults = 0
    with tempfile.TemporaryDirectory() as name:
        directory = Path(name)
        schemas = fetch_schemas(directory)
        home = directory / "home"
        home.mkdir()
        norvane = [program, "--home", home, "--settings", home / "settings.sqlite"]
        for recording in sys.argv[2:]:
            run(*norvane, "flight", "import", Path(recording).resolve(), where=directory)
        for flight in run(*norvane, "flight", "list", where=directory).splitlines():
            for form, schema in schemas.items():
                file = directory / f"{flight.split(chr(9))[0]}.{form}"
                run(*norvane, "flight", "export", file.stem, "--format", form, "-o", file, where=directory)
                fault = fault_of(file, schema)
                faults += bool(fault)
                print(f"{file.name}: {fault or 'valid'}", flush=True)
    print(f"check_exports: {'FAILED' if faults else 'all are valid'}")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()

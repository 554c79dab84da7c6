#!/usr/bin/env python3
"""A server for trying out an airline directory: takes PIREPs and ACARS messages, and keeps each as a line of JSON.

airline_server.py [PORT [DIRECTORY]]; port 8080 and the working directory unless told. It listens on this computer only. Any
path that ends in "pirep.php" is the PIREP script here, any other the ACARS script. It shows how little a script needs; a
script for the public network checks the pilot's ID too, limits what it takes, and serves https.
"""

import html
import http.server
import json
import sys
import time
import urllib.parse
from pathlib import Path

MOST_BYTES = 100_000


def form_of(body):
    """Field names and values of a posted form. A "%" and two digits stand for a byte of Windows-1252, not of UTF-8."""
    return dict(urllib.parse.parse_qsl(body.decode("cp1252", "replace"), keep_blank_values=True, encoding="cp1252",
                                       errors="replace"))


class Scripts(http.server.BaseHTTPRequestHandler):
    directory = Path()

    def do_POST(self):
        length = int(self.headers.get("Content-Length", 0))
        if length > MOST_BYTES:
            self.send_error(413)
            return
        form = form_of(self.rfile.read(length))
        is_pirep = urllib.parse.urlsplit(self.path).path.endswith("pirep.php")
        with open(self.directory / ("pireps.jsonl" if is_pirep else "messages.jsonl"), "a", encoding="utf-8") as file:
            file.write(json.dumps({"received": time.strftime("%Y-%m-%d %H:%M:%S", time.gmtime())} | form,
                                  ensure_ascii=False) + "\n")
        # Only the PIREP's answer is shown to the pilot.
        flight = html.escape(f"{form.get('origin', '')} to {form.get('destination', '')}")
        self.answer(f"<h3>Thank you.</h3><p>Your flight from {flight} has been filed.</p>" if is_pirep else "OK")

    def answer(self, text):
        page = f"<html><body>{text}</body></html>".encode("cp1252", "xmlcharrefreplace")
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=windows-1252")
        self.send_header("Content-Length", str(len(page)))
        self.end_headers()
        self.wfile.write(page)


if __name__ == "__main__":
    Scripts.directory = Path(sys.argv[2] if len(sys.argv) > 2 else ".")
    port = int(sys.argv[1]) if len(sys.argv) > 1 else 8080
    print(f"http://127.0.0.1:{port}", flush=True)
    http.server.ThreadingHTTPServer(("127.0.0.1", port), Scripts).serve_forever()

#!/usr/bin/env python3
"""A local HTTP server that parses POST bodies with Python's own parsers.

Prints its port, then answers each POST with JSON: the headers received, the
raw body, the form fields (urllib.parse.parse_qsl) or the multipart parts (the
email package), and the standard form encoding of those fields
(urllib.parse.quote_plus with nothing extra kept), to compare byte for byte.
"""
import email.parser
import email.policy
import http.server
import json
import sys
import urllib.parse


def utf8(text):
    """Header bytes the parser kept as escapes, read as the UTF-8 they are."""
    return text.encode("utf-8", "surrogateescape").decode("utf-8") if text else text


class Handler(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", "0")))
        content_type = self.headers.get("Content-Type", "")
        answer = {"headers": {k: v for k, v in self.headers.items()},
                  "body": body.decode("latin-1"), "fields": [], "parts": []}
        if content_type.startswith("application/x-www-form-urlencoded"):
            fields = urllib.parse.parse_qsl(body.decode("ascii"), keep_blank_values=True,
                                            strict_parsing=bool(body), encoding="utf-8", errors="strict")
            answer["fields"] = fields
            answer["requoted"] = "&".join(urllib.parse.quote_plus(k, safe="") + "=" +
                                          urllib.parse.quote_plus(v, safe="") for k, v in fields)
        elif content_type.startswith("multipart/"):
            message = email.parser.BytesParser(policy=email.policy.HTTP).parsebytes(
                b"Content-Type: " + content_type.encode("latin-1") + b"\r\n\r\n" + body)
            for part in message.iter_parts():
                answer["parts"].append({
                    "name": utf8(part.get_param("name", header="content-disposition")),
                    "filename": utf8(part.get_filename()),
                    "type": part.get_content_type(),
                    "content": part.get_payload(decode=True).decode("utf-8"),
                })
            answer["defects"] = [str(d) for d in message.defects]
        data = json.dumps(answer).encode("utf-8")
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *args):
        pass


server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
print(server.server_address[1], flush=True)
server.serve_forever()

"""A form server on Python's own HTTP and e-mail parsers: formserver.py PORT

Answers each POST or PUT of a form with JSON: for every field its file name, content type, size and
the SHA-256 of its bytes.
"""
import email.parser
import email.policy
import hashlib
import http.server
import json
import sys


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        head = "Content-Type: " + self.headers["Content-Type"] + "\r\n\r\n"
        message = email.parser.BytesParser(policy=email.policy.HTTP).parsebytes(
            head.encode() + body)
        fields = {}
        for part in message.iter_parts():
            content = part.get_payload(decode=True)
            fields[part.get_param("name", header="Content-Disposition")] = {
                "fileName": part.get_filename(),
                "contentType": part.get_content_type() if "Content-Type" in part else None,
                "size": len(content),
                "sha256": hashlib.sha256(content).hexdigest(),
            }
        answer = json.dumps({"method": self.command, "fields": fields}).encode()
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(answer)))
        self.end_headers()
        self.wfile.write(answer)

    do_PUT = do_POST

    def log_message(self, *arguments):
        pass


http.server.ThreadingHTTPServer(("127.0.0.1", int(sys.argv[1])), Handler).serve_forever()

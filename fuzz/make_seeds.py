#!/usr/bin/env python3
"""Writes the fuzz targets' seed inputs into corpus/<target>/: a few well-formed
inputs each, so that the fuzzer starts from frames the boards really send.

Inputs of the chunked links start with an option byte; then each chunk is a size
byte (1..64, or 0 for all that is left) followed by its bytes. Run it again after
changing a frame layout; the files are checked in."""
import io
import os
import struct
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))


def write(target, name, data):
    folder = os.path.join(HERE, 'corpus', target)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), 'wb') as f:
        f.write(data)


def chunked(options, stream, size=0):
    """options, then stream cut into chunks of size bytes (0: one chunk)"""
    out = bytes([options])
    if size == 0:
        return out + b'\x00' + stream
    for i in range(0, len(stream), size):
        piece = stream[i:i + size]
        out += bytes([len(piece)]) + piece
    return out


def pid_frame(channel, cmd, payload=b''):
    f = b'LARK' + bytes([channel]) + struct.pack('<i', len(payload) + 11) + bytes([cmd]) + payload
    return f + bytes([sum(f) & 0xFF])


def modbus_crc(data):
    crc = 0xFFFF
    for b in data:
        crc ^= b
        for _ in range(8):
            crc = (crc >> 1) ^ 0xA001 if crc & 1 else crc >> 1
    return crc


def cam_frame(cmd, payload, addr=0):
    f = b'LARK' + bytes([addr]) + struct.pack('<I', len(payload) + 12) + bytes([cmd]) + payload
    return f + struct.pack('<H', modbus_crc(f))


pid = (pid_frame(1, 1, struct.pack('<i', 100)) + pid_frame(2, 2, struct.pack('<i', -5))
       + pid_frame(3, 3, struct.pack('<fff', 1.5, 0.25, 0.0)) + pid_frame(1, 4) + pid_frame(1, 5)
       + pid_frame(5, 6, struct.pack('<i', 20)))
write('pidframedecoder', 'frames', chunked(0, pid))
write('pidframedecoder', 'frames_split', chunked(1, b'xx' + pid, 7))

text = 'temp=21.5 湿度 ok\r\n'.encode('utf-8')
write('serialrecvrule', 'utf8_split', chunked(1, text, 9))
write('serialrecvrule', 'gb18030_split', chunked(3, 'temp=21.5 湿度 ok\r\n'.encode('gb18030'), 11))
write('serialrecvrule', 'hex', chunked(0, bytes(range(0, 256, 7))))

write('networkmessageformat', 'line', b'\x00hello board\r\n')
write('networkmessageformat', 'port', b'\x015000')

write('hexstrtobytearray', 'spaced', b'4C 41 52 4B 0a ff')
write('hexstrtobytearray', 'bad_digit', b'G1 2')

write('qtsendboxfiles', 'table', '1#AT+RST\n2#AA BB\n30#含 # 号\n'.encode('utf-8'))
write('qtsendboxfiles', 'history', b'AT+GMR ping\nhello\n')

fmt = cam_frame(1, bytes([4]) + struct.pack('<HH', 4, 2))
img = cam_frame(2, bytes(range(16)))
answer = cam_frame(0x11, bytes([0]) + struct.pack('<H', 0x3008) + bytes([0x42]))
reply = cam_frame(0, bytes([0]))
write('cameralinkdecoder', 'framed', chunked(1 << 2, fmt + img + answer + reply + b'LARK', 0))
write('cameralinkdecoder', 'framed_split', chunked(2 | 1 << 2, fmt + img + b'LARK', 5))
jpeg = b'\xff\xd8\xff\xe0' + bytes(12) + b'\xff\xd9'
write('cameralinkdecoder', 'jpeg_split', chunked(1, jpeg + jpeg, 6))

# found by fuzzing: a huge announced format (1068x15371) and some 180 empty frames,
# one a chunk; each used to be decoded by clearing 49 MB of black
write('cameralinkdecoder', 'many_empty_frames_of_a_huge_format', bytes.fromhex(
    '00024743053300525783054c41524b00051104008001fc022c040b3c06d1054c41ff4242424242424242424242424242'
    '42424242424242424242024343434343430643434343434306054c424343434342424242024242424242424242424242'
    '424242424242424242424242620243434343434343434343434343434343434343430243434343434343000102050304'
    '054343054c41524b0006000000a002101010001110101010101030054242424242424942024242424242424242424242'
    '4242c2424242424242424242424242424242424232424242424242424202424242424242424242424242424242424242'
    '424242424242424242424242424242424242424242424242424242420242424242424242ff524b000511000080010507'
    '424242424242424232424242424242424202424242424242424242424242424242424242424242424242424242424242'
    '424242424242424242c5c5c5c5c5c5c04242424242424242424242424242420242424242424242424242424242424242'
    '424242424242424242424242424242424242424242424242424242424242420242424242424242424242424242424242'
    '424242424242424242424242424242424242424242424242424242424242424242c5c5c5c5c5c5c04242424242424242'
    '424242424242420242424242424242424242424242424242424242424242424242424242424242424242424242424242'
    '4242424242424242420242424242424242424242424242424242424242424201000000420200060043438001fc022c04'
    '01003c010000004202000600434306434300023333340242ffffff0a4152110000800107064700003442424242424242'
    '42424242424242424242424242424242424242424242'))

header = '寄存器编号,寄存器地址,寄存器值,描述,\r\n'
rows = '1,0x3008,0x42,软复位,\r\n2,0x3103,0x03,,\r\nshort,row\r\n'
write('datamanagerwidget', 'table', (header + rows).encode('gb18030'))

write('qtjson', 'object', b'{"verNum": "1.0.1.6", "list": [1, 2.5e3, true, null] "x": {"y": "\\u00e9"}}')

write('updateprotocol', 'reply', b'{"verNum":"1.0.1.6","verInfo":"fixes"}')
write('updateprotocol', 'disposition', b'attachment; filename=../../larkTools.zip')
name = b'bin/../x'
central = (b'PK\x01\x02' + bytes(4) + struct.pack('<H', 0x0800) + bytes(18)
           + struct.pack('<HHH', len(name), 0, 0) + bytes(12) + name)
eocd = b'PK\x05\x06' + bytes(6) + struct.pack('<HII', 1, len(central), 0) + bytes(2)
write('updateprotocol', 'zip', central + eocd)
# a whole archive as the server ships it: one entry stored, one deflated
packed = io.BytesIO()
with zipfile.ZipFile(packed, 'w') as z:
    z.writestr(zipfile.ZipInfo('larkTools', (2026, 1, 1, 0, 0, 0)), b'\x7fELF' + bytes(60))
    z.writestr(zipfile.ZipInfo('conf/readme.txt', (2026, 1, 1, 0, 0, 0)), b'lark ' * 40,
               compress_type=zipfile.ZIP_DEFLATED)
write('updateprotocol', 'archive', packed.getvalue())

# the plot window's readers: lines of numbers, the shipped frame definitions
write('plottextparser', 'csv_split', chunked(0, b'1,2,3\r\n-4.5;6\n x:1 y=2e3\r7\t8\n', 5))
write('plottextparser', 'gb18030_names', chunked(0x80, '温度:21.5 转速=1500\n'.encode('gb18030'), 3))
sensor = b'\xaa\x55\x0a' + struct.pack('<Hhf', 7, -500, 0.5) + struct.pack('>h', 2500)
sensor += struct.pack('<H', modbus_crc(sensor))
write('plotframeparser', 'sensor', chunked(0, b'\x01' + sensor + b'\xaa\x55' + sensor, 4))
write('plotframeparser', 'pid', chunked(1, pid_frame(1, 2, struct.pack('<i', 1234)) * 2, 6))
write('plotframedefinition', 'sensor', open(os.path.join(HERE, '..', 'plot', 'examples', 'larksim_sensor.json'), 'rb').read())
write('plotframedefinition', 'pid', open(os.path.join(HERE, '..', 'plot', 'examples', 'larksim_pid.json'), 'rb').read())
# reply rules: an option byte (bit 0: GB18030) and the typed text
write('replyescape', 'text', b'\x00AT\\r\\n\\x41 55 aa')
write('replyescape', 'gb18030', b'\x01' + '温度\\t\\\\'.encode('utf-8'))
write('replyescape', 'hex', b'\x00AA 55 0d')
# a rule file, a NUL, then the received stream in chunks
rules = ('{"rules": [{"pattern": "AT\\\\r\\\\n", "reply": "OK\\\\r\\\\n"},'
         ' {"match": "hex", "pattern": "AA 55", "reply": "01", "replyAs": "hex", "minIntervalMs": 5},'
         ' {"match": "regex", "pattern": "T=(\\\\d+);", "enabled": true, "delayMs": 3}]}')
write('replyrulefile', 'rules', rules.encode() + b'\x00' + b'\x05AT\r\n\x03\xaaU\x01\x06T=12;x')

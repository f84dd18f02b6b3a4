#!/usr/bin/env python3
"""Writes small seed inputs for the fuzz targets: one folder per target under
the folder given (default: seeds). Every seed is made here, so the repository
holds no binary files."""
import os
import struct
import sys


def tiff(order, w, h, bits=16, exposure=None, fmt=1):
    """An uncompressed grey TIFF with one strip; with an EXIF exposure time
    when `exposure` = (numerator, denominator)."""
    e = '<' if order == 'II' else '>'
    bpp = bits // 8
    pixels = b''.join(struct.pack(e + {1: 'B', 2: 'H', 4: 'f'}[bpp],
                                  (x * 37 + y * 11) % 251 if bpp < 4 else float(x - y))
                      for y in range(h) for x in range(w))
    tags = [(256, 3, 1, w), (257, 3, 1, h), (258, 3, 1, bits), (259, 3, 1, 1), (262, 3, 1, 1),
            (273, 4, 1, 0), (277, 3, 1, 1), (278, 3, 1, h), (279, 4, 1, len(pixels)), (339, 3, 1, fmt)]
    if exposure:
        tags.append((34665, 4, 1, 0))
    ifd_at = 8
    ifd_len = 2 + 12 * len(tags) + 4
    exif_at = ifd_at + ifd_len
    exif = b''
    if exposure:
        rational_at = exif_at + 2 + 12 + 4
        exif = struct.pack(e + 'H', 1) + struct.pack(e + 'HHII', 33434, 5, 1, rational_at) + struct.pack(e + 'I', 0)
        exif += struct.pack(e + 'II', *exposure)
    data_at = exif_at + len(exif)
    out = order.encode() + struct.pack(e + 'HI', 42, ifd_at) + struct.pack(e + 'H', len(tags))
    for tag, typ, count, value in sorted(tags):
        if tag == 273:
            value = data_at
        if tag == 34665:
            value = exif_at
        if typ == 3:
            out += struct.pack(e + 'HHIHH', tag, typ, count, value, 0)
        else:
            out += struct.pack(e + 'HHII', tag, typ, count, value)
    return out + struct.pack(e + 'I', 0) + exif + pixels


def img(w, h, bpp=2, comment='ExposureTime=0.5 s'):
    if bpp == 4:
        comment += ',BytesPerPixel=4'
    c = comment.encode('latin-1')
    head = b'IM' + struct.pack('<HHHHH', len(c), w, h, 3, 5)
    head += b'\0' * (64 - len(head))
    pix = b''.join(struct.pack('<I' if bpp == 4 else '<H', (x + 3 * y) % 60000) for y in range(h) for x in range(w))
    return head + c + pix


def text_image(w, h, extra=''):
    lines = ['#MQRS-CTImg', '# RANGE_X0 = 0', '# RANGE_X1 = %d' % w, '# RANGE_Y0 = 2', '# RANGE_Y1 = %d' % (h + 2)]
    lines += ['%d %d %g' % (x, y, x * 0.5 - y) for y in range(h) for x in range(w)]
    return ('\n'.join(lines) + '\n' + extra).encode()


def columns(n, start=8900.0):
    return ''.join('%.2f %.6f\n' % (start + i * 2.5, 0.1 + (1.0 if i > n // 2 else 0.0) + i * 1e-3)
                   for i in range(n)).encode()


def scan9809(n):
    head = ['9809     KEK-PF   BL9A', 'Sample  Cu foil', ' D=  3.13551  A', 'Mode  Transmission',
            'Offset   0 0 0 0']
    rows = ['%10.5f %10.5f %6.2f %9d %9d' % (0, 14.3 - i * 0.01, 1.0, 100000, 40000 - i * 150) for i in range(n)]
    return ('\n'.join(head + rows) + '\n').encode()


def written_spectrum(n):
    rows = ['# Tessarelle spectrum: energy normalised mu pre post']
    rows += ['%.3f %.5f %.5f %.5f %.5f' % (8970 + i, i / n, 0.2 + i / n, 0.2, 1.2) for i in range(n)]
    return ('\n'.join(rows) + '\n').encode()


def emp(w, h, magic='###Tessarelle::TSRL'):
    def key(k):
        return k.ljust(24) + ': '
    lines = [magic, key('Record Date') + '24/05/01 12:00:00.000', key('Std Edge Energy [eV]') + '8979',
             key('Spacing [nm]') + '3.13551', key('X Offset [pix]') + '0', key('Y Offset [pix]') + '0',
             key('Width [pix]') + str(w), key('Height [pix]') + str(h), key('Bin Half Width [pix]') + '0',
             key('Bin Half Height [pix]') + '0', key('Area X0') + '0', key('Area X1') + str(w - 1),
             key('Area Y0') + '0', key('Area Y1') + str(h - 1), key('Std File Name') + 'std cu.dat',
             key('Map Height') + str(h)]
    lines += [key('Map Width') + '%d %d' % (y, w) for y in range(h)]
    lines.append('##-----------------')
    lines += [' '.join('%g' % ((x - y) * 1e-4) for x in range(w)) + ' ' for y in range(h)]
    return ('\n'.join(lines) + '\n').encode()


def seeds(root):
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, '..', 'resources', 'Victoreen1.txt'), 'rb') as f:
        edges = f.read()
    sets = {
        'fuzz_tiff': [tiff('II', 4, 3), tiff('MM', 3, 2), tiff('II', 2, 2, exposure=(1, 20)),
                      tiff('MM', 2, 1, exposure=(3, 1000)), tiff('II', 3, 3, bits=8), tiff('II', 2, 2, 32, fmt=3)],
        'fuzz_img': [img(4, 3), img(3, 2, 4), img(2, 2, 2, 'ExposureTime=250 us'), img(1, 1, 2, '')],
        'fuzz_textimage': [text_image(3, 2), text_image(1, 1, 'nan\ninf\n'), text_image(2, 2)[:-9]],
        'fuzz_errpoints': [b'# Size 8 8\n1 2\n3 4 extra\n5\n# comment\n7 7\n', b'0 0\n10 -3\n# Size 2 2\n1 1\n',
                           b'x y\n1e3 2\n'],
        'fuzz_spectrum': [columns(40), scan9809(30), written_spectrum(30), b'# only comments\n1\n'],
        'fuzz_refenergies': [scan9809(12), b'angle\n14.30\n14.29\n# skipped\n14.28 1 2\n', b'9809\nOffset\n'],
        'fuzz_emp': [emp(3, 2), emp(1, 1, '###TSRL'), emp(2, 2)[:-6]],
        'fuzz_config': [b'DataRoot /data\nbatch :for a i 1 3\nbatch :next a\nbatch :end\nINCLUDE b\n# c\nkey "q v" w\n',
                        b'INCLUDE a\nx 1\n', b'include b # twice\nINCLUDE b\nWidth\t512\n'],
        'fuzz_cmdline': [b':for a i 001 010 3\n:next a\nload "a b.tif" \\\n  more\n# comment\nx # y\n\\\n',
                         b':let v "x y"\n:echo $v$\n'],
        'fuzz_batch': [b':for a i 1 5\n:let v $i$\n:echo $v$ $DataRoot$\nsetEnergy $i$\n:next a\n:end\n',
                       b':rem_start\nquit\n:rem_end\n:for o j 01 03 1\n:for p k 1 2\n:next p\n:next o\n',
                       b':let a $a$$a$\n:let a $a$$a$\n:echo $a$\nload \\\n x\n'],
        'fuzz_stars': [b'Dev.ch>Me @GetValue 12 "a b"\r\nSys>Me _Event x\nMe>Dev hello\n1234\nA: host\nP: 6057\n',
                       b'System>Me 9876\nkey one\n\nkey three\n'],
        'fuzz_elements': [edges, edges[:300] + b'\n  999 1e400 nan inf -0\n', b'Fe, Cu-K,Zn Pb-LIII Au-L2, xx-K U'],
    }
    for target, items in sets.items():
        d = os.path.join(root, target)
        os.makedirs(d, exist_ok=True)
        for i, data in enumerate(items):
            with open(os.path.join(d, 'seed%02d' % i), 'wb') as f:
                f.write(data)


if __name__ == '__main__':
    seeds(sys.argv[1] if len(sys.argv) > 1 else 'seeds')

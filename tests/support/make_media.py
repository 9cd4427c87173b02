"""Makes the clips and pictures that tests open, each with what one of them needs.

usage: make_media.py FOLDER

counter-*   90 frames; frame n shows n in eight blocks of black and white along the lower edge, the
            highest bit first. One each with B-frames and a single key frame, 30000/1001 frames a
            second, times of two lengths, a quarter turn, sound, an odd size, MPEG-4 part 2.
shape-*     pixels that are not square
colors-*    one picture described in five ways
photo*      one picture as photographs come: depths, grey, CMYK, alpha, resolution, turned by EXIF
grain.mp4   larger, with detail and noise everywhere
"""
import concurrent.futures
import math
import pathlib
import random
import struct
import subprocess
import sys

FRAMES = 90
# One row of the picture as 16-bit samples is 6 * WIDTH bytes.
WIDTH, HEIGHT = 400, 162


def run(*words):
    subprocess.run([str(word) for word in words], check=True, stdin=subprocess.DEVNULL)


def ffmpeg(*words):
    run("ffmpeg", "-v", "error", "-y", *words)


def counter(path, *options, size=(320, 180), rate="30", filters="", sound=()):
    """A clip of numbered frames over a moving pattern."""
    width, height = size
    block, rows = width // 8, height * 2 // 9
    top = height - rows
    boxes = [f"drawbox=0:{top}:{width}:{rows}:black:fill"]
    boxes += [f"drawbox={block * i}:{top}:{block}:{rows}:white:fill:"
              f"enable='mod(floor(n/{1 << (7 - i)}),2)'" for i in range(8)]
    ffmpeg("-f", "lavfi", "-i", f"testsrc2=s={width}x{height}:r={rate},{','.join(boxes)}{filters}",
           *sound, "-frames:v", FRAMES, "-pix_fmt", "yuv420p", *options, path)


def counters(folder):
    h264 = ("-c:v", "libx264", "-preset", "veryfast")
    plain = folder / "counter-30fps-bframes.mp4"
    counter(plain, *h264, "-bf", "3", "-b_strategy", "0", "-g", "250",
            "-sc_threshold", "0")
    yield lambda: ffmpeg("-i", plain, "-c", "copy", "-metadata:s:v:0", "rotate=90",
                         folder / "counter-rotated-90.mp4")
    yield lambda: counter(folder / "counter-2997.mov", *h264, rate="30000/1001")
    times = "if(lt(N,30),N,if(lt(N,60),30+3*(N-30),120+N-60))"
    yield lambda: counter(folder / "counter-vfr.mp4", *h264, "-vsync", "passthrough",
                          filters=f",setpts='{times}'")
    yield lambda: counter(folder / "counter-with-sound.m4v", *h264, "-c:a", "aac", "-shortest",
                          "-f", "mp4", sound=("-f", "lavfi", "-i", "sine=duration=3"))
    yield lambda: counter(folder / "counter-odd-size.mp4", *h264, "-pix_fmt", "yuv444p",
                          size=(322, 182), filters=",format=yuv444p,crop=321:181:0:1")
    yield lambda: counter(folder / "counter-qcif.3gp", "-c:v", "mpeg4", "-q:v", "3",
                          size=(176, 144))
    yield lambda: counter(folder / "shape-4x3-pixels.mp4", *h264, size=(240, 180),
                          filters=",setsar=4/3")
    yield lambda: counter(folder / "shape-narrow.webm", "-c:v", "libvpx-vp9", "-deadline",
                          "realtime", "-cpu-used", "8", "-frames:v", "10", size=(240, 180),
                          filters=",setsar=569/800")
    yield lambda: ffmpeg("-f", "lavfi", "-i", "testsrc2=s=720x480:r=30:d=2,noise=alls=24:allf=t",
                         *h264, "-pix_fmt", "yuv420p", "-colorspace", "smpte170m",
                         "-color_primaries", "smpte170m", "-color_trc", "bt709",
                         folder / "grain.mp4")


def noise(seed, step):
    """A smooth random field, one independent value each `step` pixels."""
    values = random.Random(seed)
    columns = WIDTH // step + 2
    grid = [[values.random() - 0.5 for _ in range(columns)] for _ in range(HEIGHT // step + 2)]

    def at(x, y):
        column, along = divmod(x / step, 1)
        row, down = divmod(y / step, 1)
        column, row = int(column), int(row)
        upper = grid[row][column] * (1 - along) + grid[row][column + 1] * along
        lower = grid[row + 1][column] * (1 - along) + grid[row + 1][column + 1] * along
        return upper * (1 - down) + lower * down

    return at


def photograph():
    """Rows of 16-bit samples: a red animal among leaves, with deep shadows and grain."""
    clouds, leaves, fur, grain = noise(1, 80), noise(2, 14), noise(3, 5), noise(4, 1)
    for y in range(HEIGHT):
        row = []
        for x in range(WIDTH):
            light = 0.58 + 0.25 * clouds(x, y) - 0.15 * y / HEIGHT
            color = [0.92 * light, 1.06 * light, 0.72 * light]
            leaf = leaves(x, y) + 0.4 * fur(x, y)
            if leaf > 0.12:
                color = [value * (0.9 + leaf) for value in (0.56, 0.66, 0.5)]
            elif leaf < -0.26:
                color = [value * (0.4 + leaf) for value in (0.7, 0.8, 0.5)]
            away = math.hypot((x - 260) / 75, (y - 85) / 72) + 0.3 * fur(x, y)
            if away < 1:
                color = [value * (1.15 - away) * (1 + 0.7 * fur(x, y))
                         for value in (0.86, 0.42, 0.2)]
                if math.hypot((x - 245) / 26, (y - 95) / 16) < 1:
                    color = [0.93, 0.9, 0.84]
                if math.hypot((x - 245) / 7, (y - 100) / 5) < 1:
                    color = [0.03, 0.02, 0.02]
            row += [round(65535 * min(max(value + 0.05 * grain(x, y), 0.004), 0.992))
                    for value in color]
        yield row


def turned_by_exif(jpeg, turned):
    """The JPEG file with the note that its rows run along the right edge, from the top."""
    entry = struct.pack(">HHIHH", 0x0112, 3, 1, 6, 0)  # Orientation, one short: 6
    tiff = b"MM\0*" + struct.pack(">IH", 8, 1) + entry + bytes(4)
    exif = b"Exif\0\0" + tiff
    data = jpeg.read_bytes()
    segment = b"\xff\xe1" + struct.pack(">H", len(exif) + 2) + exif
    turned.write_bytes(data[:2] + segment + data[2:])


def photos(folder):
    deep = folder / "photo-16bit.ppm"
    deep.write_bytes(b"P6 %d %d 65535\n" % (WIDTH, HEIGHT) +
                     b"".join(struct.pack(f">{3 * WIDTH}H", *row) for row in photograph()))
    plain = folder / "photo.bmp"
    run("convert", deep, "-depth", "8", f"BMP3:{plain}")
    # no gamma: each reader makes of it what it will
    plain_png = ("-define", "png:exclude-chunks=gAMA,cHRM")
    run("convert", deep, "-depth", "16", *plain_png, folder / "photo-16bit.png")
    deep.unlink()
    for name, *options in (
            ("photo.jpg", "-quality", "92"), ("photo.JPE", "-quality", "92"), ("photo.gif",),
            ("photo.tiff",), ("photo.jp2", "-quality", "45"),
            ("photo-144dpi.png", "-units", "PixelsPerInch", "-density", "144"),
            ("photo-grey.png", "-color-matrix", " ".join(["0.34375 0.5 0.15625"] * 3),
             "-type", "Grayscale"),
            ("photo-cmyk.jpg", "-colorspace", "CMYK", "-quality", "92"),
            ("photo-alpha.png", "-alpha", "set", "-region", "40x30+0+0", "-channel", "A",
             "-evaluate", "set", "50%"),
            ("ü – 画像 📷.png", "-resize", "120x90!", "-alpha", "set", "-channel", "A",
             "-evaluate", "set", "50%")):
        kind = "JPEG:" if name.endswith("JPE") else ""
        yield lambda path=f"{kind}{folder / name}", words=options: run(
            "convert", plain, *words, *plain_png, path)
    yield lambda: run("convert", plain, "(", "+clone", "-resize", "50%", ")",
                      folder / "photo-two-pages.tif")

    def by_exif():
        lying = folder / "lying.jpg"
        run("convert", plain, "-rotate", "-90", "-quality", "92", lying)
        turned_by_exif(lying, folder / "photo-exif-rotated.jpg")
        lying.unlink()

    yield by_exif
    linear = ("setparams=color_primaries=bt709:color_trc=bt709:colorspace=gbr,"
              "zscale=t=linear:npl=203,format=gbrpf32le,"
              "zscale=p=2020:m=2020_ncl:r=limited:npl=203:t=")
    bt2020 = ("-colorspace", "bt2020nc", "-color_primaries", "bt2020", "-color_trc")
    hevc = ("-c:v", "libx265", "-x265-params", "log-level=error", "-tag:v", "hvc1")
    for name, conversion, *options in (
            ("bt709-limited", "zscale=m=709:r=limited,format=yuv420p",
             "-colorspace", "bt709", "-color_primaries", "bt709", "-color_trc", "bt709"),
            ("bt601-limited", "zscale=m=170m:r=limited,format=yuv420p", "-colorspace", "smpte170m",
             "-color_primaries", "smpte170m", "-color_trc", "smpte170m"),
            ("bt709-full", "zscale=m=709:r=full,format=yuvj420p", "-colorspace", "bt709",
             "-color_primaries", "bt709", "-color_trc", "bt709", "-color_range", "pc"),
            ("hdr-pq", f"{linear}smpte2084,format=yuv420p10le", *hevc, *bt2020, "smpte2084"),
            ("hdr-hlg", f"{linear}arib-std-b67,format=yuv420p10le", *hevc, *bt2020,
             "arib-std-b67")):
        yield lambda path=folder / f"colors-{name}.mp4", words=options, way=conversion: ffmpeg(
            "-loop", "1", "-r", "10", "-i", plain, "-frames:v", "2",
            "-vf", f"scale=320:130,format=gbrp,{way}", "-crf", "12", *words, path)


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as workers:
        for made in [workers.submit(step) for kind in (counters, photos) for step in kind(folder)]:
            made.result()


if __name__ == "__main__":
    main()

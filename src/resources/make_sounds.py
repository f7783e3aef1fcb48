#!/usr/bin/env python3
"""Makes photo.wav (a shutter: opens, closes) and click.wav (a soft key), the same bytes each time."""
import math
import pathlib
import random
import wave

HERE = pathlib.Path(__file__).parent
RATE = 22050


def burst(noise, seconds, decay, pitch, level):
    """Low-passed noise with a struck tone in it, dying away exponentially."""
    samples, smooth = [], 0.0
    for i in range(int(seconds * RATE)):
        t = i / RATE
        smooth += 0.45 * (noise.uniform(-1, 1) - smooth)
        tone = math.sin(2 * math.pi * pitch * t)
        samples.append(level * math.exp(-t / decay) * (0.7 * smooth + 0.3 * tone))
    return samples


def mixed(length, *parts):
    """Sums of (start in seconds, samples)."""
    result = [0.0] * int(length * RATE)
    for start, samples in parts:
        first = int(start * RATE)
        for i, value in enumerate(samples[: len(result) - first]):
            result[first + i] += value
    return result


def save(name, samples):
    with wave.open(str(HERE / name), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(
            b"".join(int(max(-1.0, min(1.0, s)) * 32767).to_bytes(2, "little", signed=True) for s in samples)
        )


noise = random.Random(1893)
save(
    "photo.wav",
    mixed(
        0.30,
        (0.000, burst(noise, 0.06, 0.012, 1900, 0.9)),
        (0.045, burst(noise, 0.05, 0.030, 320, 0.25)),
        (0.110, burst(noise, 0.18, 0.022, 1250, 0.8)),
    ),
)
save("click.wav", mixed(0.05, (0.0, burst(noise, 0.05, 0.006, 2400, 0.5))))

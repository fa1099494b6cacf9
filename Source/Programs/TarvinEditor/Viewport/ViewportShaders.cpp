// SPDX-License-Identifier: MIT
#include "ViewportShaders.h"

namespace ViewportShaders
{
const char* const PictureVertex = R"(#version 330 core
out vec2 Place;
void main()
{
	Place = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
	gl_Position = vec4(Place, 0.0, 1.0);
}
)";

const char* const BackgroundFragment = R"(#version 330 core
uniform vec3 UpperColour;
uniform vec3 LowerColour;
in vec2 Place;
out vec4 Colour;
void main()
{
	// Half a step of noise hides the bands that a slow gradient has in eight bits.
	float Noise = fract(sin(dot(gl_FragCoord.xy, vec2(12.9898, 78.233))) * 43758.5453) - 0.5;
	Colour = vec4(mix(LowerColour, UpperColour, smoothstep(-1.0, 1.0, Place.y)) + Noise / 255.0, 1.0);
}
)";

const char* const MeshVertex = R"(#version 330 core
layout(location = 0) in vec3 Position;
layout(location = 1) in vec4 Normal;
layout(location = 2) in vec4 AxisX;
layout(location = 3) in vec4 AxisY;
layout(location = 4) in vec4 AxisZ;
uniform mat4 ViewProjection;
uniform vec3 Eye;
out vec3 WorldNormal;
out vec3 ToEye;
flat out float Mirror;
invariant gl_Position;
void main()
{
	vec4 Local = vec4(Position, 1.0);
	vec3 World = vec3(dot(AxisX, Local), dot(AxisY, Local), dot(AxisZ, Local));
	// Normals go by the cofactors, which turn them round under a mirror.
	vec3 CofactorX = cross(AxisY.xyz, AxisZ.xyz);
	Mirror = dot(AxisX.xyz, CofactorX) < 0.0 ? -1.0 : 1.0;
	WorldNormal = Mirror * vec3(dot(CofactorX, Normal.xyz), dot(cross(AxisZ.xyz, AxisX.xyz), Normal.xyz),
		dot(cross(AxisX.xyz, AxisY.xyz), Normal.xyz));
	float Length = length(WorldNormal);
	WorldNormal = Length > 0.0 ? WorldNormal / Length : vec3(0.0);
	ToEye = Eye - World;
	gl_Position = ViewProjection * vec4(World, 1.0);
}
)";

const char* const MeshFragment = R"(#version 330 core
uniform vec3 Tint;
uniform vec3 Light; // towards the light beside the eye
in vec3 WorldNormal;
in vec3 ToEye;
flat in float Mirror;
out vec4 Colour;
void main()
{
	vec3 View = normalize(ToEye);
	bool bOutside = gl_FrontFacing == (Mirror > 0.0);
	vec3 N = WorldNormal * (bOutside ? 1.0 : -1.0);
	// Where there is no usable normal, the face's own.
	if (!(dot(N, N) > 0.25))
	{
		N = cross(dFdx(ToEye), dFdy(ToEye));
		N *= dot(N, View) < 0.0 ? -1.0 : 1.0;
	}
	N = normalize(N);
	float Sky = 0.5 + 0.5 * N.z;
	float Key = pow(max(0.0, 0.5 + 0.5 * dot(N, Light)), 2.0);
	float Head = max(0.0, dot(N, View));
	vec3 Lit = Tint * (mix(vec3(0.30, 0.29, 0.28), vec3(0.44, 0.46, 0.49), Sky) + 0.42 * Key + 0.16 * Head);
	Colour = vec4(bOutside ? Lit : Lit * vec3(0.62, 0.60, 0.60), 1.0);
}
)";

const char* const SpeckVertex = R"(#version 330 core
layout(location = 2) in vec4 AxisX;
layout(location = 3) in vec4 AxisY;
layout(location = 4) in vec4 AxisZ;
uniform mat4 ViewProjection;
uniform vec3 Center; // of the box in local space
uniform vec3 Extent;
uniform float PixelsPerUnit; // of the screen, at depth 1
invariant gl_Position;
void main()
{
	vec4 Local = vec4(Center, 1.0);
	vec3 HalfSize = vec3(dot(abs(AxisX.xyz), Extent), dot(abs(AxisY.xyz), Extent), dot(abs(AxisZ.xyz), Extent));
	gl_Position = ViewProjection * vec4(dot(AxisX, Local), dot(AxisY, Local), dot(AxisZ, Local), 1.0);
	gl_PointSize = max(1.0, 1.3 * length(HalfSize) * PixelsPerUnit / gl_Position.w);
}
)";

const char* const SpeckFragment = R"(#version 330 core
uniform vec3 Tint;
out vec4 Colour;
void main()
{
	Colour = vec4(0.66 * Tint, 1.0);
}
)";

const char* const MaskFragment = R"(#version 330 core
uniform vec2 Mask;
out vec2 Colour;
void main()
{
	Colour = Mask;
}
)";

const char* const GridFragment = R"(#version 330 core
uniform vec3 Forward;
uniform vec3 Across;  // to the right edge of the picture, at depth 1
uniform vec3 Upwards; // to its upper edge
uniform float EyeHeight;
uniform vec2 EyePlace;   // modulo the widest spacing, in spacings
uniform vec2 EyeFromAxes; // in spacings
uniform float Spacing;
uniform float FadeDepth;
uniform vec2 DepthRange;
uniform vec3 LineColour;
uniform vec3 AxisXColour;
uniform vec3 AxisYColour;
in vec2 Place;
out vec4 Colour;

float Lines(vec2 At, vec2 Step)
{
	vec2 Distance = abs(fract(At - 0.5) - 0.5) / max(Step, vec2(1e-9));
	vec2 Cover = clamp(1.0 - Distance, 0.0, 1.0) * clamp(1.6 - Step * 4.0, 0.0, 1.0);
	return max(Cover.x, Cover.y);
}

void main()
{
	vec3 Direction = Forward + Place.x * Across + Place.y * Upwards;
	float Depth = -EyeHeight / Direction.z;
	float Slant = abs(dFdx(Depth)) + abs(dFdy(Depth));
	vec2 At = Direction.xy * (Depth / Spacing);
	vec2 Step = vec2(length(vec2(dFdx(At.x), dFdy(At.x))), length(vec2(dFdx(At.y), dFdy(At.y))));
	if (!(Depth > 0.0))
	{
		discard;
	}
	vec2 Ground = At + EyePlace;
	float Line = max(max(0.30 * Lines(Ground, Step), 0.50 * Lines(Ground / 10.0, Step / 10.0)),
		0.65 * Lines(Ground / 100.0, Step / 100.0));
	vec2 FromAxes = abs(At + EyeFromAxes) / max(Step, vec2(1e-9));
	float AxisX = clamp(1.5 - FromAxes.y, 0.0, 1.0);
	float AxisY = clamp(1.5 - FromAxes.x, 0.0, 1.0);
	vec4 Result = vec4(LineColour, Line);
	Result = mix(Result, vec4(AxisYColour, 0.85), AxisY);
	Result = mix(Result, vec4(AxisXColour, 0.85), AxisX);
	float Slope = abs(Direction.z) / length(Direction);
	Result.a *= smoothstep(0.0, 0.09, Slope) * (1.0 - smoothstep(0.25 * FadeDepth, FadeDepth, length(Direction) * Depth));
	if (Result.a < 0.004)
	{
		discard;
	}
	Colour = Result;
	// A little deeper than it is anywhere in the pixel: a floor in the same plane covers it.
	float Deeper = Depth * 1.0005 + Slant;
	float Clip = (DepthRange.y + DepthRange.x - 2.0 * DepthRange.x * DepthRange.y / Deeper) / (DepthRange.y - DepthRange.x);
	gl_FragDepth = clamp(0.5 + 0.5 * Clip, 0.0, 0.99999);
}
)";

const char* const PivotVertex = R"(#version 330 core
layout(location = 0) in vec4 Position; // and the size in w
uniform mat4 ViewProjection;
uniform float PixelRatio;
flat out float Size;
void main()
{
	gl_Position = ViewProjection * vec4(Position.xyz, 1.0);
	Size = Position.w * PixelRatio;
	gl_PointSize = Size;
}
)";

const char* const PivotFragment = R"(#version 330 core
uniform vec3 PivotColour;
uniform float PixelRatio;
flat in float Size;
out vec4 Colour;
void main()
{
	vec2 FromMiddle = abs(gl_PointCoord - 0.5) * Size / PixelRatio;
	float Reach = 0.5 * Size / PixelRatio;
	float Narrow = min(FromMiddle.x, FromMiddle.y);
	float Long = max(FromMiddle.x, FromMiddle.y);
	float Inner = clamp((1.0 - Narrow) * PixelRatio + 0.5, 0.0, 1.0) * step(Long, Reach - 1.5);
	float Outer = clamp((2.2 - Narrow) * PixelRatio + 0.5, 0.0, 1.0);
	Colour = vec4(mix(vec3(0.08), PivotColour, Inner), max(Inner, 0.55 * Outer));
	if (Colour.a < 0.01)
	{
		discard;
	}
}
)";

const char* const ComposeFragment = R"(#version 330 core
uniform sampler2D Scene;
uniform sampler2D Mask;
uniform sampler2D Corner;
uniform vec4 CornerPlace; // left, lower edge, width, height
uniform vec4 Band;        // left, lower edge, right, upper edge; empty for none
uniform vec4 OutlinePlace; // what is selected lies within: left, lower edge, right, upper edge; empty for nothing
uniform float PixelRatio;
uniform vec3 OutlineColour;
uniform vec3 BandColour;
out vec4 Colour;

vec2 Spread(ivec2 Pixel, ivec2 Size)
{
	float Width = 2.4 * PixelRatio;
	int Reach = int(ceil(Width));
	vec2 Most = vec2(0.0);
	for (int Y = -Reach; Y <= Reach; ++Y)
	{
		int Side = int(sqrt(max(0.0, (Width + 0.5) * (Width + 0.5) - float(Y * Y))));
		for (int X = -Side; X <= Side; ++X)
		{
			float Weight = clamp(Width + 0.5 - length(vec2(X, Y)), 0.0, 1.0);
			if (Weight > 0.0)
			{
				vec2 Value = texelFetch(Mask, clamp(Pixel + ivec2(X, Y), ivec2(0), Size - 1), 0).rg;
				Most = max(Most, Value * Weight);
			}
		}
	}
	return Most;
}

void main()
{
	ivec2 Pixel = ivec2(gl_FragCoord.xy);
	vec3 Result = texelFetch(Scene, Pixel, 0).rgb;
	if (all(greaterThanEqual(gl_FragCoord.xy, OutlinePlace.xy)) && all(lessThan(gl_FragCoord.xy, OutlinePlace.zw)))
	{
		vec2 Here = texelFetch(Mask, Pixel, 0).rg;
		vec2 Around = Here.r < 1.0 ? Spread(Pixel, textureSize(Mask, 0)) : Here;
		float Strength = (1.0 - Here.r) * mix(0.38 * Around.r, Around.r, Around.g);
		Result = mix(Result, OutlineColour, Strength);
	}
	vec2 InCorner = (gl_FragCoord.xy - CornerPlace.xy) / CornerPlace.zw;
	if (all(greaterThanEqual(InCorner, vec2(0.0))) && all(lessThan(InCorner, vec2(1.0))))
	{
		// Colours come multiplied with their cover, rows from the upper one.
		vec4 Axes = texture(Corner, vec2(InCorner.x, 1.0 - InCorner.y));
		Result = Result * (1.0 - Axes.a) + Axes.rgb;
	}
	if (Band.z > Band.x)
	{
		vec2 Inside = min(gl_FragCoord.xy - Band.xy, Band.zw - gl_FragCoord.xy);
		float Depth = min(Inside.x, Inside.y);
		Result = mix(Result, BandColour, Depth < 0.0 ? 0.0 : Depth < PixelRatio ? 0.9 : 0.14);
	}
	Colour = vec4(Result, 1.0);
}
)";
}

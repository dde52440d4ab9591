// The types of OpenGL that the toolkit's headers name, declared for checks on machines without it. Nothing
// here calls OpenGL. On a Mac, the system's own headers are used.
#pragma once

typedef char GLchar;
typedef unsigned char GLboolean;
typedef unsigned char GLubyte;
typedef int GLint;
typedef int GLsizei;
typedef unsigned int GLuint;
typedef unsigned int GLenum;
typedef unsigned int GLbitfield;
typedef float GLfloat;
typedef double GLdouble;
typedef void GLvoid;
